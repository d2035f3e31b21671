// frmMain: the menu bar, the pop-up menus, and which commands are available when.

#include "core/app_logs.h"
#include "core/globals.h"
#include "core/paths.h"
#include "driver/cls_main.h"
#include "monitor/folder_menus.h"
#include "monitor/frm_main.h"
#include "monitor/help_links.h"
#include "monitor/main_title.h"
#include "monitor/open_associated.h"

#include <array>

namespace zv {

namespace {

using platform::ui::MenuItem;

MenuNode entry(MenuItem& item, std::string caption, std::vector<MenuNode> children = {})
{
    item.setCaption(std::move(caption));
    return { &item, std::move(children) };
}

MenuNode separator(MenuItem& item)
{
    return entry(item, std::string(kSeparatorCaption));
}

// The commands that must not run while the device is busy, in the order of the menu bar.
constexpr std::array kDeviceCommands {
    &frmMain::mnuApplicationSettings,
    &frmMain::mnuCalibrationData,
    &frmMain::mnuPackConfiguration,
    &frmMain::mnuLoadZentaviaSettings,
    &frmMain::mnuLoadLoggingDefinitionFile,
    &frmMain::mnuLoadPackConfiguration,
    &frmMain::mnuSaveZentaviaSettings,
    &frmMain::mnuSavePackConfiguration,
    &frmMain::mnuDataSet,
    &frmMain::mnuPPloadPackConfigurationToDevice,
    &frmMain::mnuPPsavePackConfiguration,
    &frmMain::mnuPPImportPackConfiguration,
    &frmMain::mnuAccessLevel,
    &frmMain::mnuChangeUserAccessLevel,
    &frmMain::mnuPreferences,
    &frmMain::mnuSavePackInfo,
    &frmMain::mnuResetPolling,
    &frmMain::mnuConnect,
    &frmMain::mnuSafeDisconnect,
    &frmMain::mnuInitialize,
    &frmMain::mnuRebuildLAN,
    &frmMain::mnuPollAllOnce,
    &frmMain::mnuPollAllContinuously,
    &frmMain::mnuRelearn,
    &frmMain::mnuRelearnPreserve,
    &frmMain::mnuToggleSM,
    &frmMain::mnuToggleWired,
    &frmMain::mnuToggleConfigure,
    &frmMain::mnuResetFuse,
    &frmMain::mnuViewSafetyHistory,
    &frmMain::mnuViewTemperatureHistory,
    &frmMain::mnuViewVoltageHistory,
    &frmMain::mnuGenerateDemoINI,
    &frmMain::mnuLoadChemistryData,
    &frmMain::mnuVerifyChemistryData,
    &frmMain::mnuConfigCommPort,
    &frmMain::mnuBootstrapLoader,
    &frmMain::mnuCalibration,
    &frmMain::mnuCal470,
    &frmMain::mnuSMBCommandMapping,
    &frmMain::mnuScriptEngine,
    &frmMain::mnuManufacturerAccess,
    &frmMain::mnuSMBReadWrite,
    &frmMain::mnuSmbusAddress,
};

// The commands that write or revert pending values.
constexpr std::array kPendingCommands {
    &frmMain::mnuWritePendingChanges,
    &frmMain::mnuParameters_Write,
    &frmMain::mnuParameters_RevertAll,
};

constexpr const char* kProgramName = "zentavia";

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

template <typename T> void append(std::vector<T>& to, std::vector<T> more)
{
    to.insert(to.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

} // namespace

void frmMain::buildMenus()
{
    std::vector<MenuNode> help { entry(mnuHelp_Contents, "How to Add Help Documents") };
    append(help, documentMenu());
    append(help,
        {
            entry(mnuPP, "Norvale Systems Online"),
            entry(mnuInformationOnline, "Information Online"),
            entry(mnuTechnicalReferenceManual, "Technical Reference Manual Online"),
            separator(mnuAboutSep),
            entry(mnuAbout, "About Zentavia"),
        });
    menuBar_ = {
        entry(mnuFile, "File",
            {
                entry(mnuApplicationSettings, "Application Settings",
                    {
                        entry(mnuLoadZentaviaSettings, "Load Settings from File..."),
                        entry(mnuSaveZentaviaSettings, "Save Settings to File..."),
                    }),
                separator(mnuLoadSeperator),
                entry(mnuCalibrationData, "Calibration Data",
                    {
                        entry(mnuRestoreCalibrationData, "Restore Data from File..."),
                        entry(mnuSaveCalibrationData, "Save Data to File..."),
                    }),
                separator(mnuLoadSeperator2),
                entry(mnuPackConfiguration, "Pack Configuration (.dat, .tmap, .aux, .sbd)",
                    {
                        entry(mnuLoadPackConfiguration, "Load Configuration from File..."),
                        entry(mnuLoadPackConfigurationRelearn, "Load Configuration from File and Relearn..."),
                        entry(mnuSavePackConfiguration, "Save Configuration to File... (.dat) Only"),
                        entry(mnuDatExport, "Export DAT to XML"),
                    }),
                separator(mnuPPsep2),
                entry(mnuDataSet, "Data-Set (.ppcsv)",
                    {
                        entry(mnuPPloadPackConfigurationToDevice, "Load Data-Set to Device"),
                        entry(mnuPPsavePackConfiguration, "Save Data-Set"),
                        entry(mnuPPImportPackConfiguration, "Import Data-Set to Zentavia"),
                    }),
                separator(mnusepAdvanced1),
                entry(mnuLoadChemistryData, "Load Chemistry Data"),
                entry(mnuVerifyChemistryData, "Verify Chemistry Data"),
                separator(mnuSep1),
                entry(mnuChangeUserAccessLevel, "Change User Access Level..."),
                entry(mnuAccessLevel, "Configure User Access Level..."),
                separator(mnuSep2),
                entry(mnuSavePackInfo, "Save Pack Parameters",
                    {
                        entry(mnuSaveAsReadOnly, "Dynamic Parameters..."),
                        entry(mnuSaveAsWriteOnly, "Static Parameters..."),
                        entry(mnuSaveAsAllParameters, "All Parameters..."),
                    }),
                separator(mnuSep10),
                entry(mnuPreferences, "Preferences..."),
                entry(mnuExit, "E&xit"),
            }),
        entry(mnulogging, "Logging",
            {
                entry(mnuLoadLoggingDefinitionFile, "Load Logging Definition File..."),
                entry(mnuConfigLogging, "Configure..."),
                entry(mnuGenerateLogDefinitionFile, "Generate Log Definition File..."),
                entry(mnuExport, "Export File..."),
                separator(mnuloogingsep1),
                entry(mnuStartLogging, "Enable Logging"),
                entry(mnuStopLogging, "Disable Logging"),
                entry(mnuAddComment, "Add Comment"),
                entry(mnuCaptureLearnedData, "Capture Learned Data"),
            }),
        entry(mnuCommand, "Commands",
            {
                entry(mnuConnect, "Connect to Pack"),
                entry(mnuSafeDisconnect, "Safe Disconnect"),
                entry(mnuInitialize, "Initialize"),
                entry(mnuRebuildLAN, "Rebuild"),
                entry(mnuRelearn, "Relearn / Initialize"),
                entry(mnuRelearnPreserve, "Relearn / Initialize / Preserve User Cal"),
                entry(mnuResetFuse, "Reset Fuse"),
                separator(mnutoggleSep),
                entry(mnuToggleSM, "Toggle Ship Bit"),
                entry(mnuToggleWired, "Toggle Wired Bit"),
                entry(mnuToggleConfigure, "Toggle Configured Bit"),
                separator(mnuPollSeperator),
                entry(mnuViewSafetyHistory, "View Safety History"),
                entry(mnuViewTemperatureHistory, "View Temperature History"),
                entry(mnuViewVoltageHistory, "View Voltage History"),
                separator(mnuPollSeperator2),
                entry(mnuPollAllContinuously, "Poll Data"),
                entry(mnuStopPolling, "Stop Polling"),
                entry(mnuResetPolling, "Reset Plot"),
                separator(mnuSep6),
                entry(mnuPollAllOnce, "Update Dynamic Data"),
                entry(mnuReadSelectedNode, "Read Parameters for Selected Node"),
                entry(mnuReadAllNodes, "Read All Parameters"),
                entry(mnuWritePendingChanges, "Write Pending Changes to RAM"),
                entry(mnuCommit, "Commit Changes to Flash"),
            }),
        entry(mnuView, "Advanced",
            {
                entry(mnuEventLog, "Event Log..."),
                entry(mnuCommunicationsLog, "Communications Log..."),
                entry(mnuClearLog, "Clear Log"),
                entry(mnuGenerateDemoINI, "Generate Demo INI"),
            }),
        entry(mnuConfigure, "Configure", { entry(mnuConfigCommPort, "Communications Port...") }),
        entry(mnuUtilities, "Utilities",
            {
                entry(mnuBootstrapLoader, "Bootstrap Loader..."),
                entry(mnuCalibration, "Calibration..."),
                entry(mnuCal470, "Calibrate ZK9470 Voltage..."),
                entry(mnuManufacturerAccess, "ManufacturerAccess()..."),
                entry(mnuSMBCommandMapping, "SBD Command Mapping..."),
                entry(mnuSMBReadWrite, "SBData Read/Write..."),
                entry(mnuScriptEngine, "Script Engine..."),
                entry(mnuSmbusAddress, "SMBus Address"),
                separator(mnuSepAddons),
                entry(mnuAddOns, "Add-Ons", utilityMenu()),
            }),
        entry(mnuHelp, "Help", std::move(help)),
    };
    popupMenus_ = {
        entry(mnuParameters, "Parameters",
            {
                entry(mnuParameterHelp, "Info"),
                entry(mnuSelectAll, "Select all"),
                entry(mnuParameters_EditThis, "Edit this Parameter"),
                entry(mnuParameters_ReadThis, "Read this Parameter"),
                entry(mnuParameters_ReadAll, "Read all Parameters"),
                entry(mnuParameters_Revert, "Revert this Change"),
                entry(mnuParameters_RevertAll, "Revert all Changes"),
                entry(mnuParameters_Write, "Write Pending Changes to RAM"),
                entry(mnuParameters_commit, "Commit Changes to Flash"),
            }),
        entry(mnuParametersPopup, "Parameters",
            {
                entry(mnuSaveCSVFile, "Save to CSV File"),
                entry(mnuPrintLvParameters, "Print"),
            }),
        entry(mnulvNodes, "Nodes", { entry(mnulvNodes_ReadParameters, "Update Dynamic Data") }),
        entry(mnuPlotMenu, "Plot",
            { entry(mnuGenerateColor, "Generate Random Color"), entry(mnuSelectColor, "Select Color...") }),
    };
    for (const auto* tree : { &menuBar_, &popupMenus_ }) {
        forEachMenuNode(*tree, [this](const MenuNode& node) {
            if (node.isSubMenu())
                subMenus_[node.item] = &node;
        });
    }
}

MenuItem& frmMain::folderEntry(const std::string& list, std::size_t index)
{
    return *folderEntries_.emplace_back(std::make_unique<MenuItem>(list + "(" + std::to_string(index) + ")"));
}

std::vector<MenuNode> frmMain::documentMenu()
{
    std::vector<MenuNode> nodes;
    for (const auto& document : documentEntries(joinPath(context_.programFolder, kDocumentationFolder))) {
        MenuItem& item = folderEntry(mnuHelp_Contents.name(), nodes.size() + 1);
        item.setVisible(document.visible);
        nodes.push_back(entry(item, document.caption));
    }
    return nodes;
}

std::vector<MenuNode> frmMain::utilityMenu()
{
    const auto names = utilityNames(context_.programFolder, kProgramName);
    std::vector<MenuNode> nodes { entry(mnuAddUtility, names.empty() ? kNoUtilities : names.front()) };
    for (std::size_t i = 1; i < names.size(); ++i)
        nodes.push_back(entry(folderEntry(mnuAddUtility.name(), i), names[i]));
    return nodes;
}

void frmMain::openFromMenu(const std::string& path)
{
    disableAllCommands(true);
    (void)OpenAssociated(path, *context_.desktop, context_.dialogs,
        [this](const std::string& text) { sbStatusBar.setPanelText(kInfoPanel, text); });
    enableAllCommands(true);
}

void frmMain::wireMenus()
{
    mnuEventLog.onClick = [this] { context_.logs.eventLog().show(); };
    mnuCommunicationsLog.onClick = [this] { context_.logs.modemLog().show(); };
    mnuClearLog.onClick = [this] { context_.logs.modemLog().rtfEvent.clear(); };
    mnuExit.onClick = [this] { requestClose(); };
    // With no utility beside the program the one entry reads "Empty" and does nothing when clicked,
    // so that Add-Ons can be opened to show it.
    if (mnuAddUtility.caption() == kNoUtilities)
        mnuAddUtility.onClick = [] {};
    mnuAbout.onClick = [this] {
        const AppVersion v = appVersion();
        (void)context_.dialogs.messageBox("Zentavia " + std::to_string(v.major) + "."
                + std::to_string(v.minor) + "." + std::to_string(v.revision) + "\r\nNorvale Systems",
            platform::Buttons::OK, platform::Icon::Information, "About Zentavia");
    };
    if (!context_.desktop)
        return;
    mnuPP.onClick = [this] { openLink(kMakerHomePage, context_.dialogs, *context_.desktop); };
    mnuInformationOnline.onClick = [this] { OpenHelpLink(); };
    mnuTechnicalReferenceManual.onClick = [this] { OpenRefLink(); };

    const std::string documents = joinPath(context_.programFolder, kDocumentationFolder);
    mnuHelp_Contents.onClick = [this, documents] { openFromMenu(joinPath(documents, kAddMenuDocument)); };
    for (const MenuNode& node : subMenus_.at(&mnuHelp)->children) {
        MenuItem& item = *node.item;
        if (item.name().starts_with(mnuHelp_Contents.name() + "(") && !node.isSeparator())
            item.onClick
                = [this, &item, documents] { openFromMenu(joinPath(documents, trimmed(item.caption()))); };
    }
    for (const MenuNode& node : subMenus_.at(&mnuAddOns)->children) {
        MenuItem& item = *node.item;
        if (item.caption() != kNoUtilities)
            item.onClick = [this, &item] {
                openFromMenu(joinPath(context_.programFolder, trimmed(item.caption()) + ".exe"));
            };
    }
}

void frmMain::OpenHelpLink()
{
    if (context_.desktop)
        openTargetLink(
            context_.globals.gTargetURL, context_.globals.gTargetName, context_.dialogs, *context_.desktop);
}

void frmMain::OpenRefLink()
{
    if (context_.desktop)
        openTargetLink(
            context_.globals.gTargetREF, context_.globals.gTargetName, context_.dialogs, *context_.desktop);
}

bool frmMain::isWired(const MenuItem& item) const
{
    if (item.onClick)
        return true;
    const auto it = subMenus_.find(&item);
    if (it == subMenus_.end())
        return false;
    for (const MenuNode& child : it->second->children) {
        if (!child.isSeparator() && isWired(*child.item))
            return true;
    }
    return false;
}

void frmMain::refreshAvailability()
{
    for (const auto* tree : { &menuBar_, &popupMenus_ }) {
        forEachMenuNode(*tree, [this](const MenuNode& node) {
            node.item->setEnabled(node.isSeparator() || isWired(*node.item));
        });
    }
    // There is something to commit only after a write to a file that keeps it in RAM.
    const bool written = main_ && main_->CellWeft().Parameters.ParametersWritten;
    for (auto* item : { &mnuCommit, &mnuParameters_commit })
        setCommand(*item, written);
}

void frmMain::setCommand(MenuItem& item, bool on)
{
    item.setEnabled(on && isWired(item));
}

void frmMain::setLoggingCommands()
{
    const bool logOpen = logFileOpen && logFileOpen();
    for (auto* item : { &mnuConfigLogging, &mnuExport, &mnuStartLogging })
        setCommand(*item, !logOpen);
    for (auto* item : { &mnuStopLogging, &mnuAddComment, &mnuCaptureLearnedData })
        setCommand(*item, logOpen);
    setCommand(mnuStopPolling, context_.globals.PollingActive);
}

void frmMain::disableAllCommands(bool all)
{
    for (auto command : kDeviceCommands)
        setCommand(this->*command, false);
    setLoggingCommands();
    if (!all)
        return;
    if (batteryModeTimer)
        batteryModeTimer(false);
    for (auto* item : { &mnuReadAllNodes, &mnuReadSelectedNode })
        setCommand(*item, false);
    for (auto command : kPendingCommands)
        setCommand(this->*command, false);
}

void frmMain::enableAllCommands(bool all)
{
    for (auto command : kDeviceCommands)
        setCommand(this->*command, true);
    setLoggingCommands();
    setCommand(mnuWritePendingChanges, PendingChanges);
    for (auto* item : { &mnulvNodes_ReadParameters, &mnuReadSelectedNode, &mnuReadAllNodes })
        setCommand(*item, true);
    if (!all)
        return;
    if (batteryModeTimer)
        batteryModeTimer(true);
    for (auto command : kPendingCommands)
        setCommand(this->*command, PendingChanges);
}

void frmMain::WritePending(bool on)
{
    PendingChanges = on;
    for (auto command : kPendingCommands)
        setCommand(this->*command, on);
}

} // namespace zv
