#pragma once
// The poll: the one-second tick with its ring of 20 and the rate of cmbPollRate, the pending
// commands that a poll serves in table order before it looks at the stop flag, one sample
// (PollDynamicData, UpdateDynamicData), the safety read, the state labels, the failed-sample
// path (CommsLost) and the heartbeat that keeps the command set open while idle.

#include "monitor/monitor_context.h"

#include <array>
#include <functional>
#include <memory>

namespace zv::platform {
class Timer;
}

namespace zv {

class ParameterTabs;

// The pending commands, in the order a tick serves them.
enum class PendingCommand {
    RefLink,
    HelpLink,
    Commit,
    AddComment,
    CaptureLearnedData,
    WritePendingChanges,
    ReadThis,
    ReadAll,
    ReadSelected,
    StartLogging,
    Export,
    HomePage,
    Heartbeat,
};
inline constexpr std::size_t kPendingCommandCount = 13;

// What the poll hands to the parts that draw and log (the plot, the status panes, the log).
struct PollHooks {
    std::function<void()> updatePlot; // UpdatePlot
    std::function<void()> updateLogFile; // UpdateLogFile: one DATA row
    std::function<void()> resetPlot; // mnuResetPolling: clear the plot data, ResetXY
    std::function<void()> updateSafetyPanes; // UpdateSafetyFlags and the "Safety Flags" LED
    std::function<void()> updateSampleFlags; // UpdatalvFlags for the pack flags, UpdatalvFET
    std::function<bool()> startLogging; // the mnuStartLogging operation; false: it failed
    std::function<void()> closeLog;
};

inline constexpr int kPollRateEntries = 20;

class PollCycle {
public:
    PollCycle(MonitorContext& context, ParameterTabs& tabs);
    ~PollCycle();

    void mnuPollAllContinuously();
    void mnuStopPolling();
    void mnuResetPolling();
    // Closing the main window: stops a poll, then runs events until the last tick has served the
    // pending commands and turned tmrPollData off (an open sample finishes first).
    void stopForClose();
    void tmrPollData_Timer();
    void tmrHeartbeat_Timer();
    // The heartbeat's work: EnableUlmarCommandSet once the target is idle.
    void refreshCommandSet();

    void PollDynamicData();
    [[nodiscard]] bool UpdateDynamicData();
    // The part of a good sample that draws: the pack row, the cells, the flags, the property and
    // parameter lists shown, from the values the driver holds.
    void showSample();
    [[nodiscard]] bool ReadSafetyData();
    void UpdateDeviceBits();
    void CommsLost();

    // cmbPollRate: the 20 entries and the stored selection; a choice takes effect at once.
    void fillPollRate();
    void choosePollRate(int index);

    // A command the user reached: at once between disableAllCommands(true) and
    // enableAllCommands(true), or while polling at the next tick. Rows 6 to 9 also ask for the
    // refresh of the command states.
    void runOrDefer(PendingCommand command);
    // Asks the next tick for disableAllCommands(true) and enableAllCommands(true) only.
    void requestRefresh() { refreshPending_ = true; }
    [[nodiscard]] bool pending(PendingCommand command) const;
    // The action of each pending row; rows without one do nothing.
    std::array<std::function<void()>, kPendingCommandCount> actions;

    PollHooks hooks;
    // Raises or lowers the process priority; best effort (the process's own by default).
    std::function<void(bool high)> setHighPriority;

    platform::Timer& tmrPollData() { return *tmrPollData_; }
    platform::Timer& tmrHeartbeat() { return *tmrHeartbeat_; }
    platform::Timer& tmrBatteryMode() { return *tmrBatteryMode_; }
    // The serial link's battery-mode timer: every 50 s of a poll it asks the next tick for the
    // refresh of the command states. disableAllCommands(true) stops it; enableAllCommands(true)
    // runs it again when "AlarmMode" is on (never on the USB adapter, which has no such timer).
    void runBatteryModeTimer(bool on);

    int PollRate = 2;
    int PollTickCount = 0;
    bool ReadingAllParameters = false;
    long LostCommSamples = 0;
    long HardwarePollAge = 0;
    int GatewayState = 2;
    bool ResetPlot = true;

private:
    void tick();
    [[nodiscard]] bool readSample();
    [[nodiscard]] bool anyPending() const;
    void servePending();
    void setGatewayState(bool online);
    void showHardwarePollAge();
    [[nodiscard]] bool autoLogging() const;

    MonitorContext& c_;
    ParameterTabs& tabs_;
    std::unique_ptr<platform::Timer> tmrPollData_;
    std::unique_ptr<platform::Timer> tmrHeartbeat_;
    std::unique_ptr<platform::Timer> tmrBatteryMode_;
    std::array<bool, kPendingCommandCount> pending_ {};
    bool refreshPending_ = false;
    bool inTick_ = false;
};

} // namespace zv
