#include "monitor/poll_cycle.h"

#include "core/active_form.h"
#include "core/error_handler.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "device_files/file_status.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/list_values.h"
#include "monitor/live_rows.h"
#include "monitor/main_title.h"
#include "monitor/parameter_tabs.h"
#include "monitor/unexpected_error.h"
#include "platform/event_loop.h"
#include "platform/process_priority.h"

#include <algorithm>

namespace zv {

namespace {

constexpr int kTickMs = 1000;
constexpr int kHeartbeatMs = 60000;
constexpr int kBatteryModeMs = 50000;
// Bounds the wait of a close for the last tick; a sample through all its retries stays well below.
constexpr int kCloseWaitMs = 120000;
constexpr int kDynamicFile = 1;
constexpr int kCellFile = 4;
constexpr int kSafetyFile = 5;
constexpr int kConfigurationFile = 9;
constexpr long kWiredBit = 0x8;
constexpr long kConfiguredBit = 0x20;
constexpr long kShipBit = 0x1;
constexpr long kHardwarePollBit = 0x2000;
constexpr platform::Rgb kGreen = 0x008000;
constexpr platform::Rgb kGreyText = 0x808080;

std::size_t row(PendingCommand command)
{
    return static_cast<std::size_t>(command);
}

// Rows 6 to 9 of the table change parameters: their tick also refreshes the command states.
bool changesParameters(PendingCommand command)
{
    return command >= PendingCommand::WritePendingChanges && command <= PendingCommand::ReadSelected;
}

} // namespace

PollCycle::PollCycle(MonitorContext& context, ParameterTabs& tabs)
    : c_(context)
    , tabs_(tabs)
    , tmrPollData_(context.loop.createTimer())
    , tmrHeartbeat_(context.loop.createTimer())
    , tmrBatteryMode_(context.loop.createTimer())
{
    tmrPollData_->setInterval(kTickMs);
    tmrPollData_->onTick = [this] { tmrPollData_Timer(); };
    tmrHeartbeat_->setInterval(kHeartbeatMs);
    tmrHeartbeat_->onTick = [this] { tmrHeartbeat_Timer(); };
    tmrBatteryMode_->setInterval(kBatteryModeMs);
    tmrBatteryMode_->onTick = [this] {
        if (c_.globals.PollingActive)
            requestRefresh();
    };
    actions[row(PendingCommand::Heartbeat)] = [this] { refreshCommandSet(); };
    setHighPriority = [](bool high) {
        (void)platform::setProcessPriority(
            high ? platform::ProcessPriority::High : platform::ProcessPriority::Normal);
    };
}

PollCycle::~PollCycle() = default;

void PollCycle::runBatteryModeTimer(bool on)
{
    tmrBatteryMode_->setEnabled(on && c_.globals.settings.AlarmMode != 0 && !c_.globals.usbTransport());
}

bool PollCycle::autoLogging() const
{
    return c_.globals.settings.AutoLogging;
}

void PollCycle::mnuPollAllContinuously()
{
    if (autoLogging() && hooks.startLogging && !hooks.startLogging()
        && c_.dialogs.messageBox("Logging failed to start.\r\nContinue polling without logging?",
               platform::Buttons::YesNo, platform::Icon::Information, "Zentavia")
            == platform::Answer::No)
        return;
    c_.globals.PollingActive = true;
    c_.form.disableAllCommands(false);
    setHighPriority(true);
    c_.form.sbStatusBar.setPanelText(kPollingPanel, "Polling Active");
    c_.form.sbStatusBar.setPanelPicture(kPollingPanel, "Polling");
    c_.form.sbStatusBar.setPanelText(kInfoPanel, "Reading dynamic data for all cells continuously");
    tmrPollData_->setInterval(kTickMs);
    tmrPollData_->setEnabled(true);
}

void PollCycle::mnuStopPolling()
{
    c_.globals.PollingActive = false;
    c_.form.enableAllCommands(false);
    c_.form.sbStatusBar.setPanelText(kInfoPanel, "Reading Dynamic data for all cells completed");
    c_.form.sbStatusBar.setPanelText(kPollingPanel, "Polling Inactive");
    c_.form.sbStatusBar.setPanelPicture(kPollingPanel, "Pollingd");
    setHighPriority(false);
    if (autoLogging() && hooks.closeLog)
        hooks.closeLog();
}

void PollCycle::mnuResetPolling()
{
    ResetPlot = true;
    if (hooks.resetPlot)
        hooks.resetPlot();
}

void PollCycle::stopForClose()
{
    if (!c_.globals.PollingActive && !tmrPollData_->enabled())
        return;
    mnuStopPolling();
    (void)c_.loop.waitUntil([this] { return !tmrPollData_->enabled(); }, kCloseWaitMs);
}

void PollCycle::tmrPollData_Timer()
{
    // Device waits run events: a tick that comes while one runs is dropped, so no second device
    // exchange begins inside the first.
    if (inTick_)
        return;
    inTick_ = true;
    struct Leave {
        bool& inTick;
        ~Leave() { inTick = false; }
    } leave { inTick_ };
    tick();
}

void PollCycle::tick()
{
    if (anyPending())
        servePending();
    if (!c_.globals.PollingActive) {
        tmrPollData_->setEnabled(false);
        return;
    }
    c_.form.disableAllCommands(false);
    // While the link is lost the sample itself brings it back first; a safety read before that
    // would only spend the tick on retries.
    if (LostCommSamples == 0)
        (void)ReadSafetyData();
    if (++PollTickCount > c_.form.cmbPollRate.listCount())
        PollTickCount = 1;
    if (PollRate > 0 && PollTickCount % PollRate == 0)
        PollDynamicData();
}

bool PollCycle::anyPending() const
{
    return refreshPending_ || std::ranges::any_of(pending_, [](bool flag) { return flag; });
}

bool PollCycle::pending(PendingCommand command) const
{
    return pending_[row(command)];
}

void PollCycle::servePending()
{
    c_.form.disableAllCommands(true);
    refreshPending_ = false;
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        if (!pending_[i])
            continue;
        // Cleared first: a flag set again by its own action waits for the next tick.
        pending_[i] = false;
        if (actions[i])
            actions[i]();
    }
    c_.form.enableAllCommands(true);
}

void PollCycle::runOrDefer(PendingCommand command)
{
    if (c_.globals.PollingActive) {
        pending_[row(command)] = true;
        if (changesParameters(command))
            refreshPending_ = true;
        return;
    }
    c_.form.disableAllCommands(true);
    if (actions[row(command)])
        actions[row(command)]();
    c_.form.enableAllCommands(true);
}

void PollCycle::PollDynamicData()
{
    tmrPollData_->setEnabled(false);
    try {
        if (UpdateDynamicData()) {
            if (hooks.updatePlot)
                hooks.updatePlot();
            if (hooks.updateLogFile)
                hooks.updateLogFile();
            UpdateDeviceBits();
        }
    } catch (const std::exception& e) {
        if (c_.errors)
            c_.errors->AutoHandler(unexpectedError(e), "Main", "PollDynamicData");
    }
    tmrPollData_->setEnabled(true);
}

bool PollCycle::UpdateDynamicData()
{
    // An unexpected failure ends the sample quietly: it neither plots nor logs.
    try {
        return readSample();
    } catch (const std::exception&) {
        return false;
    }
}

bool PollCycle::readSample()
{
    clsCellWeft& driver = c_.main.CellWeft();
    std::string text;
    // After a lost sample the link is rebuilt before the next one: port or adapter, dongle,
    // unlock, command set. A pack that restarted or a device node that came back is found again.
    if (LostCommSamples > 0 && !driver.RecoverLink()) {
        CommsLost();
        return false;
    }
    if (!driver.GetFile(kDynamicFile, text) || !driver.GetFile(kCellFile, text)
        || (!c_.globals.PollingActive && !ReadSafetyData())) {
        CommsLost();
        return false;
    }
    showSample();
    return true;
}

void PollCycle::showSample()
{
    const clsCellWeft& driver = c_.main.CellWeft();
    frmMain& f = c_.form;
    const DisplaySettings& display = driver.Parameters.display;
    setGatewayState(true);
    showPackRow(f.lvGateway, driver.GatewayParameters, display);
    showCellRows(f.lvNodes, driver.nodes, display);
    showBoardTemperature(f.lvGateway, driver.GatewayParameters, display);
    if (hooks.updateSampleFlags)
        hooks.updateSampleFlags();
    LostCommSamples = 0;
    showHardwarePollAge();
    tabs_.refreshCellValues();
    tabs_.refreshGatewayValues();
}

void PollCycle::showHardwarePollAge()
{
    const auto& driver = c_.main.CellWeft();
    const long flags
        = valueBits(driver.GatewayParameters.FindByName("Internal Flags 2"), driver.Parameters.display);
    if (flags & kHardwarePollBit) {
        HardwarePollAge = 0;
        c_.form.sbStatusBar.setPanelText(kInfoPanel, "Hardware Poll Completed Last Sample.");
        return;
    }
    ++HardwarePollAge;
    c_.form.sbStatusBar.setPanelText(
        kInfoPanel, "Last Hardware Poll " + std::to_string(HardwarePollAge) + " Sample(s) Ago.");
}

void PollCycle::setGatewayState(bool online)
{
    c_.form.lvGateway.setText(kGatewayRow, online ? "Online" : "Offline");
    GatewayState = online ? 1 : 2;
}

bool PollCycle::ReadSafetyData()
{
    std::string text;
    if (!c_.main.CellWeft().GetFile(kSafetyFile, text))
        return false;
    if (hooks.updateSafetyPanes)
        hooks.updateSafetyPanes();
    return true;
}

void PollCycle::UpdateDeviceBits()
{
    clsCellWeft& driver = c_.main.CellWeft();
    AppGlobals& g = c_.globals;
    const DisplaySettings& display = driver.Parameters.display;
    std::string text;
    const bool configurationRead = driver.GetFile(kConfigurationFile, text);
    const long algorithm = valueBits(driver.GatewayParameters.FindByName("Algorithm enable"), display);
    g.gAlgEnableBit3 = configurationRead && (algorithm & kWiredBit);
    g.gAlgEnableBit5 = configurationRead && (algorithm & kConfiguredBit);
    // Each file clears only its own states: a failed file 9 read leaves Ship as file 5 tells it.
    const bool safetyRead = driver.GetFile(kSafetyFile, text);
    const long internal = valueBits(driver.GatewayParameters.FindByName("Internal Flags 2"), display);
    g.gInternalFlag0 = safetyRead && (internal & kShipBit);
    const bool bothRead = configurationRead && safetyRead;
    frmMain& f = c_.form;
    const std::array labels { std::pair { &f.lblSHIP_BIT, g.gInternalFlag0 },
        std::pair { &f.lblUNLOCK_BIT, g.gAlgEnableBit3 }, std::pair { &f.lblCONFIG_BIT, g.gAlgEnableBit5 } };
    const std::array words { "Ship", "Wired", "Configured" };
    for (std::size_t i = 0; i < labels.size(); ++i) {
        auto& [label, set] = labels[i];
        label->setCaption(bothRead ? words[i] : "n/a");
        label->setForeColor(bothRead && set ? kGreen : kGreyText);
    }
}

void PollCycle::CommsLost()
{
    ++LostCommSamples;
    const std::string count = std::to_string(LostCommSamples);
    frmMain& f = c_.form;
    f.sbStatusBar.setPanelText(kInfoPanel, "Lost communication" + count + " Sample(s) Ago.");
    if (LostCommSamples > 1 && (!c_.mainFormActive || c_.mainFormActive()))
        f.Notify("Communications Error",
            "Lost communication " + count
                + " Sample(s) Ago.\r\nTry reconnecting to the pack using the menu Commands >> Connect to "
                  "Pack",
            platform::Icon::Critical);
    f.sbStatusBar.setPanelPicture(kHlkPanel, "netTimeout");
    f.sbStatusBar.setPanelText(kHlkPanel, "Lost Comms");
    setGatewayState(false);
    c_.main.ClearRXTXFlags();
    if (c_.globals.gBreakOnError)
        (void)c_.dialogs.messageBox("Communication Error", platform::Buttons::OK, platform::Icon::Exclamation,
            "Debug Breakpoint Active");
    tmrPollData_->setEnabled(true);
}

void PollCycle::tmrHeartbeat_Timer()
{
    if (c_.globals.PollingActive) {
        pending_[row(PendingCommand::Heartbeat)] = true;
        return;
    }
    refreshCommandSet();
}

void PollCycle::refreshCommandSet()
{
    if (ReadingAllParameters)
        return;
    clsCellWeft& driver = c_.main.CellWeft();
    if (driver.usbTransport()) {
        (void)driver.Usb.usbWaitIdle();
    } else {
        // One look at the status: a busy device skips this beat, the next one comes in a minute.
        const auto status = driver.Files.statusOnce();
        if (!status || *status == kFileStatusBusy)
            return;
    }
    c_.form.disableAllCommands(false);
    (void)(driver.usbTransport() ? driver.Usb.usbEnableUlmarCommandSet()
                                 : driver.Bus.EnableUlmarCommandSet());
    c_.form.enableAllCommands(false);
}

void PollCycle::fillPollRate()
{
    std::vector<std::string> entries;
    for (int seconds = 1; seconds <= kPollRateEntries; ++seconds)
        entries.push_back(std::to_string(seconds) + " Sec");
    c_.form.cmbPollRate.setItems(std::move(entries));
    int rate = 2;
    try {
        rate = std::stoi(readSetting(c_.settings, "PollingInterval", c_.programFolder));
    } catch (const std::exception&) {
    }
    if (rate < 1 || rate > kPollRateEntries)
        rate = 2;
    PollRate = rate;
    c_.form.cmbPollRate.setListIndex(rate - 1);
}

void PollCycle::choosePollRate(int index)
{
    if (index < 0 || index >= c_.form.cmbPollRate.listCount())
        return;
    PollRate = index + 1;
    writeSetting(c_.settings, "PollingInterval", std::to_string(PollRate));
}

} // namespace zv
