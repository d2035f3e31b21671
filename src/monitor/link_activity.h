#pragma once
// What the main window shows of the link while it works: the "HLK" panel's activity picture and
// "Communicating" on every line sent or received, put back to "Idle" by tmrCommStatus 250 ms
// after the last one (unless the link is lost), and the progress bar of reads and transfers.

#include <memory>
#include <string>

namespace zv::platform {
class EventLoop;
class Timer;
} // namespace zv::platform

namespace zv {

class clsMain;
class frmMain;

inline constexpr int kCommStatusMs = 250;

class LinkActivity {
public:
    // Takes gMain's activity and progress hooks; gives them back when it goes.
    LinkActivity(frmMain& form, clsMain& main, platform::EventLoop& loop);
    ~LinkActivity();
    LinkActivity(const LinkActivity&) = delete;
    LinkActivity& operator=(const LinkActivity&) = delete;

    // The bar at percent, with text + percent + " %" on it.
    void UpdateProgress(int percent, const std::string& text);
    // Hides and clears the bar.
    void StartAndStopProgress();

    [[nodiscard]] platform::Timer& tmrCommStatus() { return *tmrCommStatus_; }

private:
    void tmrCommStatus_Timer();

    frmMain& form_;
    clsMain& main_;
    std::unique_ptr<platform::Timer> tmrCommStatus_;
};

} // namespace zv
