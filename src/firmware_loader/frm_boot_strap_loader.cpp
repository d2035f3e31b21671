#include "firmware_loader/frm_boot_strap_loader.h"

#include "core/active_form.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "driver/cls_main.h"
#include "firmware_loader/calibration_carry.h"
#include "platform/event_loop.h"

#include <filesystem>

namespace zv {

namespace {

constexpr int kHourglass = 11;
constexpr int kNormalPointer = 0;
constexpr const char* kNotAvailable = "n/a";
constexpr const char* kAppTitle = "Zentavia";
constexpr const char* kFolderSetting = "Path_BootLoader";

std::string pictureOf(platform::Icon icon)
{
    switch (icon) {
    case platform::Icon::Information:
        return "info";
    case platform::Icon::Critical:
    case platform::Icon::Exclamation:
        return "error";
    default:
        return {};
    }
}

} // namespace

frmBootStrapLoader::frmBootStrapLoader(BootStrapLoaderServices services)
    : Window("frmBootStrapLoader")
    , s_(std::move(services))
{
    addControls({ &lblWarning, &lblFile, &lblFileCount, &lblAppVersion, &lblDataVersion, &lblFile1Version,
        &lblFile2Version, &fraSystemInfo, &lblAppFFileVersion, &lblAppSysVersion, &lblDataCRC, &lblFDirCRC,
        &lblFFileVersion, &lblFW, &lblFWCRC, &lblSystemCRC, &lblSystemStatus, &lblSystemVersion, &pgbRecords,
        &lblStatus, &sbStatusBar, &cmdLoadImage, &cmdDownload, &chkPreserve, &mnuFile, &mnuLoad, &mnuDownload,
        &mnuGetSystemInformation, &mnuClose, &mnuExit });
    sbStatusBar.addPanel({ kInfoPanel, "", "", "Shows general status information", 0 });
    lblWarning.setCaption(kLoaderWarning);
    cmdLoadImage.setCaption("Load Image...");
    cmdDownload.setCaption("Download");
    chkPreserve.setCaption(kPreserveCaption);
    mnuFile.setCaption("&File");
    mnuLoad.setCaption("&Load Image...");
    mnuDownload.setCaption("&Download");
    mnuGetSystemInformation.setCaption("&Get System Information");
    mnuClose.setCaption("&Close");
    mnuExit.setCaption("E&xit");
    cmdLoadImage.onClick = [this] { chooseFile(); };
    mnuLoad.onClick = [this] { chooseFile(); };
    cmdDownload.onClick = [this] { download(); };
    mnuDownload.onClick = [this] { download(); };
    chkPreserve.onClick = [this] { chkPreserve_Click(); };
    mnuGetSystemInformation.onClick = [this] {
        if (loader_)
            (void)loader_->verify();
    };
    mnuClose.onClick = [this] { requestClose(); };
    mnuExit.onClick = [this] {
        if (s_.exitApplication)
            s_.exitApplication();
    };
}

frmBootStrapLoader::~frmBootStrapLoader() = default;

LoaderView frmBootStrapLoader::makeView()
{
    LoaderView view;
    view.status = [this](const std::string& text) { lblStatus.setCaption(text); };
    view.progress = [this](int percent) { pgbRecords.setValue(percent); };
    view.info = [this](const std::string& text, platform::Icon icon) { showInfo(text, icon); };
    view.title = [this](const std::string& text) { setCaption(text); };
    view.showImage = [this](const LoadedImageView& image) {
        lblFile.setCaption(image.fileName);
        lblFileCount.setCaption(std::to_string(image.sectionCount));
        lblAppVersion.setCaption(image.versionLabel1);
        lblDataVersion.setCaption(image.versionLabel2);
        lblFile1Version.setCaption(image.version1);
        lblFile2Version.setCaption(image.version2);
    };
    view.showSystemInformation
        = [this](const SystemInformation& information) { showSystemInformation(information); };
    view.busy = [this](bool busy) { setBusy(busy); };
    view.downloadEnabled = [this](bool enabled) { setDownloadEnabled(enabled); };
    view.beep = s_.beep;
    return view;
}

void frmBootStrapLoader::showInfo(const std::string& text, platform::Icon icon)
{
    sbStatusBar.setPanelText(kInfoPanel, text);
    sbStatusBar.setPanelPicture(kInfoPanel, pictureOf(icon));
}

platform::ui::Label* frmBootStrapLoader::fieldLabel(const std::string& name)
{
    return dynamic_cast<platform::ui::Label*>(findControl(name));
}

void frmBootStrapLoader::showSystemInformation(const SystemInformation& information)
{
    for (const auto& [control, text] : information.fields)
        if (auto* label = fieldLabel(control))
            label->setCaption(text);
}

void frmBootStrapLoader::setBusy(bool busy)
{
    busy_ = busy;
    if (s_.setMousePointer)
        s_.setMousePointer(busy ? kHourglass : kNormalPointer);
    for (platform::ui::Control* control : std::initializer_list<platform::ui::Control*> {
             &cmdLoadImage, &chkPreserve, &mnuLoad, &mnuGetSystemInformation, &mnuClose, &mnuExit })
        control->setEnabled(!busy);
    cmdDownload.setEnabled(!busy && downloadEnabled_);
    mnuDownload.setEnabled(!busy && downloadEnabled_);
}

void frmBootStrapLoader::setDownloadEnabled(bool enabled)
{
    downloadEnabled_ = enabled;
    cmdDownload.setEnabled(enabled && !busy_);
    mnuDownload.setEnabled(enabled && !busy_);
}

void frmBootStrapLoader::showTargetControls()
{
    const AppGlobals& g = s_.loader.globals;
    fraSystemInfo.setCaption(g.gTargetName + " Information");
    chkPreserve.setVisible(g.gTargetID == "1001");
}

void frmBootStrapLoader::handleLoad()
{
    setCaption(kLoaderTitle);
    lblStatus.setCaption("Idle");
    for (auto* label : { &lblFile, &lblFileCount, &lblFile1Version, &lblFile2Version })
        label->setCaption(kNotAvailable);
    lblAppVersion.setCaption("App Version:");
    lblDataVersion.setCaption("Data Version:");
    pgbRecords.setValue(0);
    chkPreserve.setValue(platform::ui::CheckBox::Unchecked);
    closePending_ = false;
    setDownloadEnabled(false);
    if (s_.activeForm)
        s_.activeForm->set(this);
    loader_ = std::make_unique<FirmwareLoader>(s_.loader, makeView());
    calibration_ = std::make_unique<CalibrationCarry>(CalibrationCarryServices {
        s_.loader.main, s_.loader.globals, s_.loader.loop, s_.loader.dialogs, s_.loader.programFolder });
    clsCellWeft& driver = s_.loader.main.CellWeft();
    if (driver.GatewayParameters.Count() == 0 || driver.Status() == 1) {
        loader_->connectedBySelf = true;
        (void)loader_->ConnectToTarget();
    }
    showTargetControls();
    (void)loader_->verify();
}

void frmBootStrapLoader::handleUnload()
{
    const bool changed = loader_ && loader_->deviceChanged;
    calibration_.reset();
    loader_.reset(); // gives the download events back before gMain may be made anew
    if (s_.activeForm)
        s_.activeForm->set(s_.activeForm->mainForm());
    if (changed) {
        if (s_.restartApplication)
            s_.restartApplication();
        if (s_.loadMainForm)
            s_.loadMainForm();
        if (s_.updateDeviceBits)
            s_.updateDeviceBits();
    }
    if (s_.enableMainWindow)
        s_.enableMainWindow(true);
    if (s_.showMainWindow)
        s_.showMainWindow();
}

bool frmBootStrapLoader::handleCloseRequest()
{
    if (!busy_)
        return true;
    // A download must run to its end: the window only hides until then.
    closePending_ = true;
    hide();
    return false;
}

std::string frmBootStrapLoader::firstFolder() const
{
    const std::string stored = readSetting(s_.settings, kFolderSetting, s_.loader.programFolder);
    if (!stored.empty())
        return stored;
    const std::string& id = s_.loader.globals.gTargetID;
    const std::string configurations = s_.loader.programFolder + "/Configuration Files/";
    if (id == "1001" || id == "1002")
        return configurations + "ZK9460S12/Firmware";
    if (id == "1003")
        return configurations + "ZK9470/Firmware";
    return s_.loader.programFolder;
}

void frmBootStrapLoader::chooseFile()
{
    if (!loader_)
        return;
    platform::FileDialogOptions options;
    options.title = s_.loader.globals.gTargetName + " Firmware Files";
    options.filter = "Programming Files (*.enc)|*.enc";
    options.folder = firstFolder();
    const auto files = s_.loader.dialogs.openFiles(options);
    if (files.empty())
        return;
    writeSetting(s_.settings, kFolderSetting, std::filesystem::path(files.front()).parent_path().string());
    (void)loader_->LoadImage(files.front());
}

void frmBootStrapLoader::download()
{
    if (!loader_ || busy_)
        return;
    const bool mainOpen = s_.mainWindowOpen && s_.mainWindowOpen();
    if (mainOpen && s_.enableMainWindow)
        s_.enableMainWindow(false);
    std::function<std::optional<bool>()> preserve;
    if (chkPreserve.value() == platform::ui::CheckBox::Checked)
        preserve = [this] { return Preserve(); };
    lastOutcome_ = loader_->downloadWithVerification(preserve);
    if (busy_)
        setBusy(false);
    if (mainOpen && s_.enableMainWindow)
        s_.enableMainWindow(true);
    if (closePending_)
        unload();
}

std::optional<bool> frmBootStrapLoader::Preserve()
{
    return calibration_->Preserve(
        *loader_, [this] { chkPreserve.setValue(platform::ui::CheckBox::Unchecked); });
}

void frmBootStrapLoader::chkPreserve_Click()
{
    if (chkPreserve.value() != platform::ui::CheckBox::Checked)
        return;
    const auto answer = s_.loader.dialogs.messageBox(std::string(kConfirmPreserveText),
        platform::Buttons::YesNo, platform::Icon::Question, "Confirm Selection");
    if (answer != platform::Answer::Yes)
        chkPreserve.setValue(platform::ui::CheckBox::Unchecked);
}

bool frmBootStrapLoader::AutoLoadImage(const std::string& path)
{
    if (!loaded())
        show();
    return loader_ && loader_->LoadImage(path, true) == LoadOutcome::Loaded;
}

DownloadOutcome frmBootStrapLoader::AutoDownload()
{
    showInfo(kAppTitle, platform::Icon::None);
    download();
    return lastOutcome_.value_or(DownloadOutcome::Aborted);
}

} // namespace zv
