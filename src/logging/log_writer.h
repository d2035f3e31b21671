#pragma once
// The CSV log: one file open from LoggingStartup to CloseLog, a static snapshot at each end,
// one row per poll sample, comment, change and learned-data rows between. Every row goes to the
// operating system as it is written and to the disk within a second (fdatasync at most once a
// second), so a killed process loses nothing it wrote.

#include "logging/log_definition_loader.h"
#include "logging/log_rows.h"
#include "logging/log_settings.h"
#include "platform/append_file.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace zv::platform {
class Dialogs;
class EventLoop;
class SettingsStore;
class Timer;
} // namespace zv::platform

namespace zv {

struct AppGlobals;
class ErrorHandler;
class clsCellWeft;
class clsSMBusParameter;

struct LogWriterServices {
    clsCellWeft& driver;
    AppGlobals& globals;
    platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    platform::EventLoop& loop;
    std::string programFolder;
    ErrorHandler* errors = nullptr;
};

// What the writer asks of the window around it; every hook is optional.
struct LogWriterHooks {
    std::function<bool()> isTheDeviceWired;
    std::function<void(const std::string&)> info; // the panel "Info"
    std::function<void(bool open)> showLogging; // the panel "Logging": text and icon
    std::function<void(bool open)> setMenus; // the entries of an open (true) or closed log
    std::function<bool()> mainWindowActive;
    std::function<bool()> readingAll; // a read of all parameters is running
    std::function<void()> deferStartup; // while polling: LoggingStartup at the next tick
    std::function<bool()> configure; // the logging dialog, modal; false: cancelled
    // The comment of a new session; empty or nothing refuses the start. Default: the input box.
    std::function<std::optional<std::string>()> askComment;
    // The locale's short date and time; default: the C library's LC_TIME forms.
    std::function<std::string(std::chrono::system_clock::time_point)> date;
    std::function<std::string(std::chrono::system_clock::time_point)> time;
};

class LogWriter {
public:
    LogWriter(LogWriterServices services, LogWriterHooks hooks = {});
    ~LogWriter();
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    // The settings as stored; the logging dialog's OK and LoadMainForm call it.
    void reloadSettings();

    // mnuStartLogging and the start of a poll with AutoLogging.
    [[nodiscard]] bool StartLogging();
    [[nodiscard]] bool LoggingStartup();
    // mnuStopLogging: the log stays open when the device is not wired.
    void mnuStopLogging();
    void CloseLog();
    // One DATA or ERROR row after a good sample, when a log is open and a poll runs.
    void UpdateLogFile();
    void CaptureStaticData(bool first);
    [[nodiscard]] std::string ElapsedCapture() const;

    // A COMMENT row with the text as a row can hold it; nothing for an empty text.
    void addComment(const std::string& text);
    // mnuCaptureLearnedData: the Ra row of device file 12 and the tray notification.
    void captureLearnedData();
    // A CHANGE row for a gateway parameter about to be written.
    void logChange(const clsSMBusParameter& parameter);

    LogSettings settings;
    bool LogOpen = false;
    bool LoggingActive = false;
    bool FirstSample = false;
    std::int64_t LogStartTick = 0;
    std::string SessionComment;

    LogDefinitionLoader definitions;
    LogWriterHooks hooks;

private:
    [[nodiscard]] bool openFile();
    [[nodiscard]] LogStamp stamp(std::string capture) const;
    [[nodiscard]] std::string captureNow() const;
    [[nodiscard]] bool readSample();
    void writeDefinitionHeader(bool dynamic);
    void write(const std::string& rows);
    void failStartup(const std::exception& e);

    LogWriterServices s_;
    platform::AppendFile file_;
    std::unique_ptr<platform::Timer> syncTimer_;
    std::int64_t lastSyncMs_ = 0;
    bool unsynced_ = false;
};

} // namespace zv
