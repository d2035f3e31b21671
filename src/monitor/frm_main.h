#pragma once
// frmMain, the main window: the menu bar with every command of the application, the status bar
// with its keyed panels, the title, the tray icon and its notifications, and LoadMainForm. The
// lists, tabs and plot of the live monitor join through MonitorLoadSteps.
//
// A menu entry whose command is not wired (no onClick, or a sub-menu without a wired entry) stays
// disabled whatever enableAllCommands says, so that no entry pretends to work.

#include "monitor/menu_tree.h"
#include "platform/dialogs.h"
#include "platform/ui/chart.h"
#include "platform/ui/choice_controls.h"
#include "platform/ui/list_view.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/status_bar.h"
#include "platform/ui/tab_strip.h"
#include "platform/ui/window.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace zv::platform {
class Desktop;
class SettingsStore;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class AppLogs;
class ErrorHandler;
class clsMain;

struct MainFormContext {
    AppGlobals& globals;
    const platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    AppLogs& logs;
    std::string programFolder;
    // The system's browser; without one the link entries stay unavailable.
    platform::Desktop* desktop = nullptr;
    // Where a failure of LoadMainForm goes; without one it reaches the caller.
    ErrorHandler* errors = nullptr;
};

// The steps of LoadMainForm that belong to the live monitor; each runs at its place when set.
struct MonitorLoadSteps {
    std::function<void()> loggingState; // the settings of the log writer
    std::function<void()> lists; // the columns of the lists and the rows of lvNodes
    std::function<void()> plot; // the plot switches, ReconfigurePlotting, ResetXY
    std::function<void()> offline; // lvGateway reads "Offline"
    std::function<void()> tabs; // the captions of SSTab1 and SSTab, the rows of SSTabFlags
    std::function<void()> pollRate; // cmbPollRate
};

// Status-bar panel keys.
inline constexpr const char* kNodesPanel = "Nodes";
inline constexpr const char* kCommPanel = "Comm";
inline constexpr const char* kPollingPanel = "Polling";
inline constexpr const char* kLoggingPanel = "Logging";
inline constexpr const char* kHlkPanel = "HLK";
inline constexpr const char* kAlarmsPanel = "Alarms";
inline constexpr const char* kAccessPanel = "Access";

class frmMain : public platform::ui::Window {
public:
    explicit frmMain(MainFormContext context);
    ~frmMain() override;

    [[nodiscard]] platform::ui::StatusBar* statusBar() override { return &sbStatusBar; }

    // The menu bar and the pop-up menus of the lists, in order.
    [[nodiscard]] const std::vector<MenuNode>& menuBar() const { return menuBar_; }
    [[nodiscard]] const std::vector<MenuNode>& popupMenus() const { return popupMenus_; }

    // Runs when the window loads and after each reconnection; `main` stays in use until the next.
    void LoadMainForm(clsMain& main);
    // Reads the user's level (the access subsystem fills userLevelReader) and applies the menus.
    void GetUserLevelFromHardware();
    // Applies the menu policy for the present target and level.
    void UpdateMenus();
    void disableAllCommands(bool all);
    void enableAllCommands(bool all);
    // Sets PendingChanges and enables the commands that write or revert pending values.
    void WritePending(bool on);
    // The panel "Access": "Access Level " and the level.
    void ShowAccessLevel(int level);
    // The target's information and reference pages.
    void OpenHelpLink();
    void OpenRefLink();

    void AddTrayIcon();
    void RemoveTrayIcon() { trayIcon.setVisible(false); }
    // A tray notification: never blocks.
    void Notify(const std::string& title, const std::string& text, platform::Icon icon);
    // Where a notification goes when the desktop shows none: the panel "Info" and the event log.
    void NotifyInStatusBar(const std::string& title, const std::string& text);

    // The driver's FileAccessStatus: the message in the panel "Info", the count of file errors up
    // by one, a line in the event log and a "File Access Error" notification.
    void FileAccessStatus(const std::string& message, int fileNumber);
    int FileAccessErrors = 0;
    std::string LastFileAccessError;
    // False keeps the notification back (another window is the active form); none: always shown.
    std::function<bool()> fileAccessNotices;

    // Entries wired since the last call become available, the others unavailable.
    void refreshAvailability();
    [[nodiscard]] bool isWired(const platform::ui::MenuItem& item) const;
    // The system's program starter; none when the application has none.
    [[nodiscard]] platform::Desktop* desktop() const { return context_.desktop; }

    bool PendingChanges = false;
    std::string ScriptBinPath;

    // Filled by the access subsystem: UpdateMenus applies menuPolicy, GetUserLevelFromHardware
    // runs userLevelReader (which calls UpdateMenus itself).
    std::function<void(frmMain&)> menuPolicy;
    std::function<void(frmMain&)> userLevelReader;
    // True while a log file is open (the log writer).
    std::function<bool()> logFileOpen;
    MonitorLoadSteps monitorSteps;
    // Stops (false) or runs again (true) the link's battery-mode timer: disableAllCommands(true)
    // and enableAllCommands(true).
    std::function<void(bool run)> batteryModeTimer;
    // Runs after the user resized the window.
    std::function<void()> onResize;
    // Pops up one of popupMenus() at the mouse; the toolkit fills it in.
    std::function<void(platform::ui::MenuItem& menu)> popupMenu;
    // The questions and device steps of closing; false keeps the window open.
    std::function<bool()> closeRequested;
    // Runs when the window unloads: the program ends.
    std::function<void()> onExit;
    // The last step of LoadMainForm outside demo mode: the firmware loader's check of releases
    // with a known issue.
    std::function<void()> firmwareCheck;

    // File
    platform::ui::MenuItem mnuFile { "mnuFile" };
    platform::ui::MenuItem mnuApplicationSettings { "mnuApplicationSettings" };
    platform::ui::MenuItem mnuLoadZentaviaSettings { "mnuLoadZentaviaSettings" };
    platform::ui::MenuItem mnuSaveZentaviaSettings { "mnuSaveZentaviaSettings" };
    platform::ui::MenuItem mnuLoadSeperator { "mnuLoadSeperator" };
    platform::ui::MenuItem mnuCalibrationData { "mnuCalibrationData" };
    platform::ui::MenuItem mnuRestoreCalibrationData { "mnuRestoreCalibrationData" };
    platform::ui::MenuItem mnuSaveCalibrationData { "mnuSaveCalibrationData" };
    platform::ui::MenuItem mnuLoadSeperator2 { "mnuLoadSeperator2" };
    platform::ui::MenuItem mnuPackConfiguration { "mnuPackConfiguration" };
    platform::ui::MenuItem mnuLoadPackConfiguration { "mnuLoadPackConfiguration" };
    platform::ui::MenuItem mnuLoadPackConfigurationRelearn { "mnuLoadPackConfigurationRelearn" };
    platform::ui::MenuItem mnuSavePackConfiguration { "mnuSavePackConfiguration" };
    platform::ui::MenuItem mnuDatExport { "mnuDatExport" };
    platform::ui::MenuItem mnuPPsep2 { "mnuPPsep2" };
    platform::ui::MenuItem mnuDataSet { "mnuDataSet" };
    platform::ui::MenuItem mnuPPloadPackConfigurationToDevice { "mnuPPloadPackConfigurationToDevice" };
    platform::ui::MenuItem mnuPPsavePackConfiguration { "mnuPPsavePackConfiguration" };
    platform::ui::MenuItem mnuPPImportPackConfiguration { "mnuPPImportPackConfiguration" };
    platform::ui::MenuItem mnusepAdvanced1 { "mnusepAdvanced1" };
    platform::ui::MenuItem mnuLoadChemistryData { "mnuLoadChemistryData" };
    platform::ui::MenuItem mnuVerifyChemistryData { "mnuVerifyChemistryData" };
    platform::ui::MenuItem mnuSep1 { "mnuSep1" };
    platform::ui::MenuItem mnuChangeUserAccessLevel { "mnuChangeUserAccessLevel" };
    platform::ui::MenuItem mnuAccessLevel { "mnuAccessLevel" };
    platform::ui::MenuItem mnuSep2 { "mnuSep2" };
    platform::ui::MenuItem mnuSavePackInfo { "mnuSavePackInfo" };
    platform::ui::MenuItem mnuSaveAsReadOnly { "mnuSaveAsReadOnly" };
    platform::ui::MenuItem mnuSaveAsWriteOnly { "mnuSaveAsWriteOnly" };
    platform::ui::MenuItem mnuSaveAsAllParameters { "mnuSaveAsAllParameters" };
    platform::ui::MenuItem mnuSep10 { "mnuSep10" };
    platform::ui::MenuItem mnuPreferences { "mnuPreferences" };
    platform::ui::MenuItem mnuExit { "mnuExit" };

    // Logging
    platform::ui::MenuItem mnulogging { "mnulogging" };
    platform::ui::MenuItem mnuLoadLoggingDefinitionFile { "mnuLoadLoggingDefinitionFile" };
    platform::ui::MenuItem mnuConfigLogging { "mnuConfigLogging" };
    platform::ui::MenuItem mnuGenerateLogDefinitionFile { "mnuGenerateLogDefinitionFile" };
    platform::ui::MenuItem mnuExport { "mnuExport" };
    platform::ui::MenuItem mnuloogingsep1 { "mnuloogingsep1" };
    platform::ui::MenuItem mnuStartLogging { "mnuStartLogging" };
    platform::ui::MenuItem mnuStopLogging { "mnuStopLogging" };
    platform::ui::MenuItem mnuAddComment { "mnuAddComment" };
    platform::ui::MenuItem mnuCaptureLearnedData { "mnuCaptureLearnedData" };

    // Commands
    platform::ui::MenuItem mnuCommand { "mnuCommand" };
    platform::ui::MenuItem mnuConnect { "mnuConnect" };
    platform::ui::MenuItem mnuSafeDisconnect { "mnuSafeDisconnect" };
    platform::ui::MenuItem mnuInitialize { "mnuInitialize" };
    platform::ui::MenuItem mnuRebuildLAN { "mnuRebuildLAN" };
    platform::ui::MenuItem mnuRelearn { "mnuRelearn" };
    platform::ui::MenuItem mnuRelearnPreserve { "mnuRelearnPreserve" };
    platform::ui::MenuItem mnuResetFuse { "mnuResetFuse" };
    platform::ui::MenuItem mnutoggleSep { "mnutoggleSep" };
    platform::ui::MenuItem mnuToggleSM { "mnuToggleSM" };
    platform::ui::MenuItem mnuToggleWired { "mnuToggleWired" };
    platform::ui::MenuItem mnuToggleConfigure { "mnuToggleConfigure" };
    platform::ui::MenuItem mnuPollSeperator { "mnuPollSeperator" };
    platform::ui::MenuItem mnuViewSafetyHistory { "mnuViewSafetyHistory" };
    platform::ui::MenuItem mnuViewTemperatureHistory { "mnuViewTemperatureHistory" };
    platform::ui::MenuItem mnuViewVoltageHistory { "mnuViewVoltageHistory" };
    platform::ui::MenuItem mnuPollSeperator2 { "mnuPollSeperator2" };
    platform::ui::MenuItem mnuPollAllContinuously { "mnuPollAllContinuously" };
    platform::ui::MenuItem mnuStopPolling { "mnuStopPolling" };
    platform::ui::MenuItem mnuResetPolling { "mnuResetPolling" };
    platform::ui::MenuItem mnuSep6 { "mnuSep6" };
    platform::ui::MenuItem mnuPollAllOnce { "mnuPollAllOnce" };
    platform::ui::MenuItem mnuReadSelectedNode { "mnuReadSelectedNode" };
    platform::ui::MenuItem mnuReadAllNodes { "mnuReadAllNodes" };
    platform::ui::MenuItem mnuWritePendingChanges { "mnuWritePendingChanges" };
    platform::ui::MenuItem mnuCommit { "mnuCommit" };

    // Advanced
    platform::ui::MenuItem mnuView { "mnuView" };
    platform::ui::MenuItem mnuEventLog { "mnuEventLog" };
    platform::ui::MenuItem mnuCommunicationsLog { "mnuCommunicationsLog" };
    platform::ui::MenuItem mnuClearLog { "mnuClearLog" };
    platform::ui::MenuItem mnuGenerateDemoINI { "mnuGenerateDemoINI" };

    // Configure
    platform::ui::MenuItem mnuConfigure { "mnuConfigure" };
    platform::ui::MenuItem mnuConfigCommPort { "mnuConfigCommPort" };

    // Utilities
    platform::ui::MenuItem mnuUtilities { "mnuUtilities" };
    platform::ui::MenuItem mnuBootstrapLoader { "mnuBootstrapLoader" };
    platform::ui::MenuItem mnuCalibration { "mnuCalibration" };
    platform::ui::MenuItem mnuCal470 { "mnuCal470" };
    platform::ui::MenuItem mnuManufacturerAccess { "mnuManufacturerAccess" };
    platform::ui::MenuItem mnuSMBCommandMapping { "mnuSMBCommandMapping" };
    platform::ui::MenuItem mnuSMBReadWrite { "mnuSMBReadWrite" };
    platform::ui::MenuItem mnuScriptEngine { "mnuScriptEngine" };
    platform::ui::MenuItem mnuSmbusAddress { "mnuSmbusAddress" };
    platform::ui::MenuItem mnuSepAddons { "mnuSepAddons" };
    platform::ui::MenuItem mnuAddOns { "mnuAddOns" };
    platform::ui::MenuItem mnuAddUtility { "mnuAddUtility" };

    // Help
    platform::ui::MenuItem mnuHelp { "mnuHelp" };
    platform::ui::MenuItem mnuHelp_Contents { "mnuHelp_Contents" };
    platform::ui::MenuItem mnuPP { "mnuPP" };
    platform::ui::MenuItem mnuInformationOnline { "mnuInformationOnline" };
    platform::ui::MenuItem mnuTechnicalReferenceManual { "mnuTechnicalReferenceManual" };
    platform::ui::MenuItem mnuAboutSep { "mnuAboutSep" };
    platform::ui::MenuItem mnuAbout { "mnuAbout" };

    // Pop-up menus of the lists
    platform::ui::MenuItem mnuParameters { "mnuParameters" };
    platform::ui::MenuItem mnuParameterHelp { "mnuParameterHelp" };
    platform::ui::MenuItem mnuSelectAll { "mnuSelectAll" };
    platform::ui::MenuItem mnuParameters_EditThis { "mnuParameters_EditThis" };
    platform::ui::MenuItem mnuParameters_ReadThis { "mnuParameters_ReadThis" };
    platform::ui::MenuItem mnuParameters_ReadAll { "mnuParameters_ReadAll" };
    platform::ui::MenuItem mnuParameters_Revert { "mnuParameters_Revert" };
    platform::ui::MenuItem mnuParameters_RevertAll { "mnuParameters_RevertAll" };
    platform::ui::MenuItem mnuParameters_Write { "mnuParameters_Write" };
    platform::ui::MenuItem mnuParameters_commit { "mnuParameters_commit" };
    platform::ui::MenuItem mnuParametersPopup { "mnuParametersPopup" };
    platform::ui::MenuItem mnuSaveCSVFile { "mnuSaveCSVFile" };
    platform::ui::MenuItem mnuPrintLvParameters { "mnuPrintLvParameters" };
    platform::ui::MenuItem mnulvNodes { "mnulvNodes" };
    platform::ui::MenuItem mnulvNodes_ReadParameters { "mnulvNodes_ReadParameters" };
    platform::ui::MenuItem mnuPlotMenu { "mnuPlotMenu" };
    platform::ui::MenuItem mnuGenerateColor { "mnuGenerateColor" };
    platform::ui::MenuItem mnuSelectColor { "mnuSelectColor" };

    // The state labels above the parameters (the poll colours them).
    platform::ui::Label lblSHIP_BIT { "lblSHIP_BIT" };
    platform::ui::Label lblUNLOCK_BIT { "lblUNLOCK_BIT" };
    platform::ui::Label lblCONFIG_BIT { "lblCONFIG_BIT" };

    // The pack row, the cells, the selected cell's properties (the tabs of SSTab1), the gateway
    // parameters (the tabs of SSTab), the bits of the selected bit-encoded parameter.
    platform::ui::ListView lvGateway { "lvGateway" };
    platform::ui::ListView lvNodes { "lvNodes" };
    std::array<platform::ui::ListView, 3> lvProperties { platform::ui::ListView { "lvProperties(0)" },
        platform::ui::ListView { "lvProperties(1)" }, platform::ui::ListView { "lvProperties(2)" } };
    std::array<platform::ui::ListView, 11> lvParameters { platform::ui::ListView { "lvParameters(0)" },
        platform::ui::ListView { "lvParameters(1)" }, platform::ui::ListView { "lvParameters(2)" },
        platform::ui::ListView { "lvParameters(3)" }, platform::ui::ListView { "lvParameters(4)" },
        platform::ui::ListView { "lvParameters(5)" }, platform::ui::ListView { "lvParameters(6)" },
        platform::ui::ListView { "lvParameters(7)" }, platform::ui::ListView { "lvParameters(8)" },
        platform::ui::ListView { "lvParameters(9)" }, platform::ui::ListView { "lvParameters(10)" } };
    platform::ui::TabStrip SSTab1 { "SSTab1" };
    platform::ui::TabStrip SSTab { "SSTab" };
    platform::ui::Frame fraStatus { "fraStatus" };
    // The progress of reads and file transfers (UpdateProgress), hidden between them.
    platform::ui::ProgressBar picProgress { "picProgress" };
    platform::ui::ListView lvStatus { "lvStatus" };
    // The status panes: the FET row and the safety, system and battery flag grids, one list
    // to each tab of SSTabFlags.
    platform::ui::ListView lvFET { "lvFET" };
    std::array<platform::ui::ListView, 3> lvFlags { platform::ui::ListView { "lvFlags(0)" },
        platform::ui::ListView { "lvFlags(1)" }, platform::ui::ListView { "lvFlags(2)" } };
    platform::ui::TabStrip SSTabFlags { "SSTabFlags" };
    platform::ui::ComboBox cmbPollRate { "cmbPollRate" };
    platform::ui::Button cmdCollapseCells { "cmdCollapseCells" };
    platform::ui::Button cmdCollapsePack { "cmdCollapsePack" };
    // The trend plot (TrendPlot): the chart with current and RSOC channels and four Y axes, the
    // switches that choose what it shows, and the buttons of PlotControls.
    platform::ui::Chart iPlot { "iPlot", 2, 4 };
    std::array<platform::ui::CheckBox, 4> iSwitchLed { platform::ui::CheckBox { "iSwitchLed(0)" },
        platform::ui::CheckBox { "iSwitchLed(1)" }, platform::ui::CheckBox { "iSwitchLed(2)" },
        platform::ui::CheckBox { "iSwitchLed(3)" } };
    platform::ui::Button cmdToggleGridY { "cmdToggleGridY" };
    platform::ui::Button cmdResetPlot { "cmdResetPlot" };
    platform::ui::Button cmdToggleTabView { "cmdToggleTabView" };
    platform::ui::Button cmdZoomx { "cmdZoomx" };
    platform::ui::Button cmdZoomy { "cmdZoomy" };
    platform::ui::Button cmdTrackx { "cmdTrackx" };
    platform::ui::Button cmdTracky { "cmdTracky" };

    // The tab shown in SSTab (0-based); CellsChecked is given to every cell by the "Cell" header.
    int CurrentTab = 0;
    bool CellsChecked = true;

    platform::ui::StatusBar sbStatusBar { "sbStatusBar" };
    platform::ui::TrayIcon trayIcon { "trayIcon" };

protected:
    [[nodiscard]] bool handleCloseRequest() override;
    void boundsChanged(bool resized) override;
    void handleUnload() override;

private:
    void buildMenus();
    [[nodiscard]] std::vector<MenuNode> documentMenu();
    [[nodiscard]] std::vector<MenuNode> utilityMenu();
    platform::ui::MenuItem& folderEntry(const std::string& list, std::size_t index);
    void openFromMenu(const std::string& path);
    void wireMenus();
    void buildStatusBar();
    void listControls();
    void setCommand(platform::ui::MenuItem& item, bool on);
    void setLoggingCommands();
    void loadMainForm(clsMain& main);
    void showTitle();
    void showPanels();
    void showTargetLinks();
    void showVoltageCalibration();

    MainFormContext context_;
    clsMain* main_ = nullptr;
    std::vector<MenuNode> menuBar_;
    std::vector<MenuNode> popupMenus_;
    // The entries made from folders beyond the first of mnuHelp_Contents and mnuAddUtility.
    std::vector<std::unique_ptr<platform::ui::MenuItem>> folderEntries_;
    // The entries of each sub-menu, for isWired.
    std::unordered_map<const platform::ui::MenuItem*, const MenuNode*> subMenus_;
};

} // namespace zv
