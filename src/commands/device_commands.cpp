#include "commands/device_commands.h"

#include "commands/command_words.h"
#include "commands/frm_safe_disconnect.h"
#include "core/active_form.h"
#include "core/globals.h"
#include "device_files/directory.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"
#include "platform/ui/show_modal.h"

#include <exception>

namespace zv {

namespace {

constexpr int kUserCalibrationFile = 24;

} // namespace

DeviceCommands::DeviceCommands(CommandServices services, CommandHooks hooks)
    : s_(services)
    , hooks_(std::move(hooks))
{
    if (!hooks_.showModal)
        hooks_.showModal = platform::ui::eventLoopModal(s_.loop);
}

DeviceCommands::~DeviceCommands() = default;

clsCellWeft& DeviceCommands::driver()
{
    return s_.main.CellWeft();
}

bool DeviceCommands::ParametersWritten()
{
    return driver().Parameters.ParametersWritten;
}

void DeviceCommands::run(const std::function<void()>& hook)
{
    if (hook)
        hook();
}

void DeviceCommands::pointer(int shape)
{
    if (hooks_.SetMousePointer)
        hooks_.SetMousePointer(shape);
}

void DeviceCommands::notify(const std::string& title, const std::string& text, bool error)
{
    s_.window.Notify(title, text, error ? platform::Icon::Critical : platform::Icon::Information);
}

bool DeviceCommands::guarded(const char* errorTitle, const std::function<bool()>& command)
{
    try {
        return command();
    } catch (const std::exception& e) {
        pointer(kDefaultPointer);
        s_.dialogs.messageBox(std::string("An error has occurred\nError: ") + e.what(), platform::Buttons::OK,
            platform::Icon::Critical, errorTitle);
        return false;
    }
}

bool DeviceCommands::IsTheDeviceWired()
{
    if (s_.globals.gAlgEnableBit3)
        return true;
    const auto answer = s_.dialogs.messageBox("Cannot perform this operation when the 'Wired' bit is not "
                                              "set.\nWould you like to set the 'Wired' bit now?",
        platform::Buttons::YesNo, platform::Icon::Question, "Set Wired Bit?");
    if (answer != platform::Answer::Yes)
        return false;
    pointer(kHourglass);
    mnuToggleWired_Click();
    pointer(kDefaultPointer);
    return s_.globals.gAlgEnableBit3;
}

bool DeviceCommands::singleCommand(const char* word, const Outcome& outcome, bool updateBits)
{
    return guarded(outcome.errorTitle, [&] {
        pointer(kHourglass);
        const bool ok = driver().WriteCommandFile(word);
        if (!ok) {
            notify(outcome.failTitle, outcome.failText, true);
        } else {
            if (updateBits)
                run(hooks_.UpdateDeviceBits);
            if (outcome.doneTitle)
                notify(outcome.doneTitle, outcome.doneText, false);
        }
        run(hooks_.bringToFront);
        pointer(kDefaultPointer);
        return ok;
    });
}

bool DeviceCommands::Wired()
{
    return singleCommand(command_words::kWired,
        { "Toggle Wired Bit Failed", "An error has occurred while trying to toggle the wired bit.", nullptr,
            nullptr, "Toggle Wired Bit Error" },
        false);
}

bool DeviceCommands::ShipMode()
{
    return singleCommand(command_words::kShipMode,
        { "Toggle Ship Mode Bit Failed", "An error has occurred while trying to toggle the ship mode bit.",
            "Toggle Ship Mode Bit", "The ship mode bit has been toggled.", "Toggle Ship Mode Bit Error" },
        true);
}

bool DeviceCommands::ResetFuse()
{
    return singleCommand(command_words::kResetFuse,
        { "Reset Fuse Failed", "An error has occurred while trying to reset the fuse.", "Reset Fuse",
            "The fuse has been reset.", "Reset Fuse Error" },
        false);
}

bool DeviceCommands::CommitChanges(bool silent)
{
    return guarded("Commit Changes Error", [&] {
        pointer(kHourglass);
        if (!driver().WriteCommandFile(command_words::kCommit)) {
            notify("Commit Changes Failed", "An error has occurred while trying to commit.", true);
            pointer(kDefaultPointer);
            return false;
        }
        if (!silent) {
            commitEntriesOff();
            notify("Zentavia Parameters Saved!", "Recent changes have been committed to flash.", false);
        }
        driver().Parameters.ParametersWritten = false;
        run(hooks_.clearCalibrationPending);
        pointer(kDefaultPointer);
        return true;
    });
}

bool DeviceCommands::Rebuild()
{
    if (!driver().WriteCommandFile(command_words::kRebuild))
        return false;
    commitEntriesOff();
    return true;
}

void DeviceCommands::commitEntriesOff()
{
    s_.window.mnuParameters_commit.setEnabled(false);
    s_.window.mnuCommit.setEnabled(false);
}

void DeviceCommands::mnuCommit_Click()
{
    if (s_.globals.PollingActive && hooks_.deferCommit) {
        hooks_.deferCommit();
        return;
    }
    s_.window.disableAllCommands(true);
    (void)CommitChanges(false);
    s_.window.enableAllCommands(true);
}

bool DeviceCommands::CommandInitialize(bool relearn)
{
    return guarded("Initialization Error", [&] { return initialize(relearn); });
}

bool DeviceCommands::initialize(bool relearn)
{
    constexpr const char* kInitializing = "Initializing... Please Wait!";
    pointer(kHourglass);
    if (hooks_.showSplash)
        hooks_.showSplash(kInitializing);
    s_.window.sbStatusBar.setPanelText(kInfoPanel, kInitializing);
    // The splash and the text are painted before the wait for the restart begins.
    s_.loop.processEvents();
    const bool ok
        = driver().WriteCommandFile(relearn ? command_words::kInitializeRelearn : command_words::kInitialize,
            command_words::initializeWaitMs(s_.globals.gTargetID));
    run(hooks_.closeSplash);
    s_.loop.processEvents();
    (void)driver().SMBus_ReInit();
    if (!ok) {
        notify("Initialization Failed", "An error has occurred while trying to initialize.", true);
        pointer(kDefaultPointer);
        return false;
    }
    notify("Zentavia Flash Initialized!", "Flash has been initialized to its last saved state.", false);
    pointer(kDefaultPointer);
    (void)driver().GetScaling();
    run(hooks_.Parameters_ReadAll);
    return true;
}

void DeviceCommands::mnuInitialize_Click()
{
    (void)CommandInitialize(false);
}

void DeviceCommands::mnuRelearn_Click()
{
    (void)CommandInitialize(true);
}

// The restart of a relearn resets the user calibration; the image of file 24 read before it is
// written back after it.
void DeviceCommands::mnuRelearnPreserve_Click()
{
    if (!IsTheDeviceWired())
        return;
    if (!driver().GetFile(kUserCalibrationFile, UserCalibrationImage))
        return;
    s_.window.disableAllCommands(true);
    (void)CommandInitialize(true);
    s_.window.enableAllCommands(true);
    // The whole file from offset 0, in parts no longer than the device takes in one transfer.
    (void)driver().PutFile(kUserCalibrationFile, hexToBytes(UserCalibrationImage));
}

void DeviceCommands::mnuResetFuse_Click()
{
    if (!IsTheDeviceWired())
        return;
    (void)ResetFuse();
    (void)CommitChanges(true);
    run(hooks_.UpdateDynamicData);
    run(hooks_.LoadTabs);
}

frmSafeDisconnect& DeviceCommands::safeDisconnect()
{
    if (!safeDisconnect_) {
        safeDisconnect_ = std::make_unique<frmSafeDisconnect>(SafeDisconnectServices {
            s_.loop, [this] { return readWordZero(); }, [this] { s_.window.requestClose(); } });
        if (hooks_.onWindowCreated)
            hooks_.onWindowCreated(*safeDisconnect_);
    }
    return *safeDisconnect_;
}

bool DeviceCommands::readWordZero()
{
    auto& d = driver();
    if (!d.usbTransport())
        return d.Bus.SMBus_ReadWord(0).has_value();
    int value = 0;
    return d.Usb.usbReadIntWord(d.Usb.targetAddress(), 0, value) == 0;
}

void DeviceCommands::mnuSafeDisconnect_Click()
{
    const bool ok = guarded("Safe Disconnect Error", [&] {
        pointer(kHourglass);
        const bool written = driver().WriteCommandFile(command_words::kSafeDisconnect);
        pointer(kDefaultPointer);
        if (!written)
            notify("Safe Disconnect Failed", "An error has occurred while trying to enable safe disconnect.",
                true);
        return written;
    });
    if (!ok)
        return;
    s_.loop.wait(1000);
    s_.window.hide();
    frmSafeDisconnect& form = safeDisconnect();
    hooks_.showModal(form);
}

void DeviceCommands::mnuConnect_Click()
{
    if (s_.globals.gDemo) {
        run(hooks_.DetectDemoTarget);
        run(hooks_.LoadMainForm);
        return;
    }
    if (hooks_.showSplash)
        hooks_.showSplash("Initializing communications...");
    s_.loop.processEvents();
    if (!hooks_.DetectTarget || !hooks_.DetectTarget())
        return;
    if (s_.globals.gLoaderOnly)
        run(hooks_.showMaximized);
    run(hooks_.LoadMainForm);
    s_.loop.processEvents();
    run(s_.window.mnuReadAllNodes.onClick);
}

} // namespace zv
