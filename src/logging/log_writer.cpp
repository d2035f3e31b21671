#include "logging/log_writer.h"

#include "core/error_handler.h"
#include "core/globals.h"
#include "core/local_time.h"
#include "driver/cellweft.h"
#include "monitor/main_title.h"
#include "monitor/unexpected_error.h"
#include "platform/dialogs.h"
#include "platform/event_loop.h"

#include <cstring>
#include <filesystem>

namespace zv {

namespace {

constexpr int kSampleFile = 29;
constexpr int kLearnedFile = 12;
constexpr int kSyncIntervalMs = 1000;
constexpr int kStatusOffline = 1;
constexpr const char* kTitle = "Zentavia";
constexpr const char* kRowEnd = "\r\n";

std::string fileName(const std::string& path)
{
    return std::filesystem::path(path).filename().string();
}

} // namespace

LogWriter::LogWriter(LogWriterServices services, LogWriterHooks hooks)
    : definitions(LogDefinitionServices { services.driver, services.dialogs, services.loop })
    , hooks(std::move(hooks))
    , s_(services)
    , syncTimer_(services.loop.createTimer())
{
    syncTimer_->setInterval(kSyncIntervalMs);
    syncTimer_->onTick = [this] {
        syncTimer_->setEnabled(false);
        if (unsynced_) {
            file_.sync();
            unsynced_ = false;
            lastSyncMs_ = s_.loop.milliseconds();
        }
    };
    reloadSettings();
}

LogWriter::~LogWriter() = default;

void LogWriter::reloadSettings()
{
    settings = readLogSettings(s_.settings, s_.globals, s_.programFolder);
}

bool LogWriter::StartLogging()
{
    if (hooks.isTheDeviceWired && !hooks.isTheDeviceWired())
        return false;
    const auto refuse = [this](const char* text) {
        (void)s_.dialogs.messageBox(text, platform::Buttons::OK, platform::Icon::Exclamation, kTitle);
        return false;
    };
    if (s_.driver.Status() == kStatusOffline)
        return refuse("Logging cannot start because the hardware is offline.");
    if (s_.globals.gNodeCount == 0)
        return refuse("Logging cannot start because no nodes were detected.");
    if (hooks.readingAll && hooks.readingAll())
        return refuse("Logging cannot start while the application is reading the hardware's parameters.");
    const auto configure = [this] {
        if (hooks.configure && !hooks.configure())
            return false;
        reloadSettings();
        return true;
    };
    std::error_code error;
    if (std::filesystem::exists(settings.LogFilePath, error)
        && s_.dialogs.messageBox("The file " + fileName(settings.LogFilePath)
                   + " already exists.\r\nIf you continue, the data collected will be appended to the "
                     "end\r\nof this file. Otherwise you can click Cancel to create a new file. \r\n\r\n"
                     "Click OK to continue or Cancel to create new.",
               platform::Buttons::OKCancel, platform::Icon::Information, kTitle)
            == platform::Answer::Cancel
        && !configure())
        return false;
    if (!settings.hasDynamic()) {
        (void)s_.dialogs.messageBox("A dynamic data log definition file is has not been specified.",
            platform::Buttons::OK, platform::Icon::Exclamation, "File not loaded");
        if (!configure())
            return false;
    }
    if (s_.globals.PollingActive) {
        if (hooks.deferStartup)
            hooks.deferStartup();
        return true;
    }
    return LoggingStartup();
}

bool LogWriter::LoggingStartup()
{
    try {
        const AppVersion version = appVersion();
        const std::string staticTitle = captureTitle(version.major, version.minor, version.revision, false);
        const std::string dynamicTitle = captureTitle(version.major, version.minor, version.revision, true);
        const auto answer = hooks.askComment
            ? hooks.askComment()
            : s_.dialogs.inputBox(
                "Would you like to add a comment to the start of this log session?", "Enter Comment", "");
        if (!answer || answer->empty())
            return false;
        SessionComment = commentText(*answer, s_.globals.gListSep);
        if (!openFile())
            return false;
        LoggingActive = true;
        if (hooks.info)
            hooks.info("Opened Log file " + settings.LogFilePath);
        LogOpen = true;
        LogStartTick = s_.loop.milliseconds();
        if (hooks.showLogging)
            hooks.showLogging(true);
        const LogStamp start = stamp("0");
        write(LogRows(s_.globals.gListSep).sessionComment(start.date, start.time, SessionComment));
        if (settings.hasStatic()) {
            if (!definitions.LoadStaticLogDefinition(settings.StaticDefinitionFile)) {
                CloseLog();
                return false;
            }
            write(LogRows(s_.globals.gListSep)
                      .headerBlock(
                          staticTitle, settings.StaticDefinitionFile, s_.driver.Directory.LogFile, false));
            CaptureStaticData(true);
        }
        if (!definitions.LoadDynamicLogDefinition(settings.DynamicDefinitionFile)) {
            CloseLog();
            return false;
        }
        write(LogRows(s_.globals.gListSep)
                  .headerBlock(
                      dynamicTitle, settings.DynamicDefinitionFile, s_.driver.Directory.LogFile, true));
        if (hooks.setMenus && (!hooks.mainWindowActive || hooks.mainWindowActive()))
            hooks.setMenus(true);
        FirstSample = true;
        return true;
    } catch (const std::exception& e) {
        failStartup(e);
        return false;
    }
}

void LogWriter::failStartup(const std::exception& e)
{
    (void)s_.dialogs.messageBox(std::string("An error has occurred.\r\nError: ") + e.what(),
        platform::Buttons::OK, platform::Icon::Critical, kTitle);
    if (s_.errors)
        s_.errors->AutoHandler(unexpectedError(e), "modMain", "LoggingStartup");
}

bool LogWriter::openFile()
{
    const std::string& path = settings.LogFilePath;
    const int error = file_.open(path);
    if (error == 0) {
        lastSyncMs_ = s_.loop.milliseconds();
        return true;
    }
    // No such folder is the missing file of an append; anything else cannot be opened.
    if (error == ENOENT)
        (void)s_.dialogs.messageBox("The file " + path + " is missing.\r\nError: " + std::strerror(error),
            platform::Buttons::OK, platform::Icon::Critical, "Missing File");
    else
        (void)s_.dialogs.messageBox(
            "An error has occurred while opening the file " + path + "\r\nError: " + std::strerror(error),
            platform::Buttons::OK, platform::Icon::Critical, "Error Opening File");
    return false;
}

void LogWriter::write(const std::string& rows)
{
    if (!file_.append(rows)) {
        if (hooks.info)
            hooks.info("An error has occurred while writing the file " + settings.LogFilePath);
        return;
    }
    const std::int64_t now = s_.loop.milliseconds();
    if (now - lastSyncMs_ >= kSyncIntervalMs) {
        file_.sync();
        lastSyncMs_ = now;
        unsynced_ = false;
        return;
    }
    unsynced_ = true;
    if (!syncTimer_->enabled())
        syncTimer_->setEnabled(true);
}

LogStamp LogWriter::stamp(std::string capture) const
{
    const auto now = s_.loop.now();
    return { hooks.date ? hooks.date(now) : shortDate(now), hooks.time ? hooks.time(now) : timeOfDay(now),
        std::move(capture) };
}

std::string LogWriter::ElapsedCapture() const
{
    return elapsedCaptureText(s_.loop.milliseconds() - LogStartTick, s_.globals.gDecimalSep);
}

std::string LogWriter::captureNow() const
{
    return FirstSample ? "0" : ElapsedCapture();
}

bool LogWriter::readSample()
{
    FileRequest request;
    request.file = kSampleFile;
    request.offset = 0;
    request.count = s_.driver.Directory.LogFile.FileCount;
    const FileReply reply = s_.driver.FileAccessRequest(request);
    return reply.ok && s_.driver.Conversion.ParseLogData(reply.text, s_.driver.Directory.LogFile);
}

void LogWriter::CaptureStaticData(bool first)
{
    const LogRows rows(s_.globals.gListSep);
    const LogStamp at = stamp(first ? "0" : ElapsedCapture());
    // One more CR LF pair: two empty lines after the block.
    write((readSample() ? rows.data(at, s_.driver.Directory.LogFile) : rows.error(at)) + kRowEnd + kRowEnd);
}

void LogWriter::UpdateLogFile()
{
    if (!LogOpen || !s_.globals.PollingActive)
        return;
    try {
        const LogRows rows(s_.globals.gListSep);
        const LogStamp at = stamp(captureNow());
        if (readSample()) {
            write(rows.data(at, s_.driver.Directory.LogFile));
        } else {
            write(rows.error(at));
            if (s_.globals.gBreakOnError)
                (void)s_.dialogs.messageBox(
                    "Function FileAccessRequest returned false while trying to log data",
                    platform::Buttons::OK, platform::Icon::Exclamation, "Debug Breakpoint Active");
        }
        if (FirstSample) {
            LogStartTick = s_.loop.milliseconds();
            FirstSample = false;
        }
    } catch (const std::exception& e) {
        if (s_.errors)
            s_.errors->AutoHandler(unexpectedError(e), "frmMain", "UpdateLogFile");
    }
}

void LogWriter::mnuStopLogging()
{
    if (hooks.isTheDeviceWired && !hooks.isTheDeviceWired())
        return;
    CloseLog();
}

void LogWriter::CloseLog()
{
    LoggingActive = false;
    if (file_.isOpen()) {
        write(std::string(kRowEnd) + kRowEnd);
        if (settings.hasStatic() && definitions.LoadStaticLogDefinition(settings.StaticDefinitionFile)) {
            const AppVersion v = appVersion();
            write(LogRows(s_.globals.gListSep)
                      .headerBlock(captureTitle(v.major, v.minor, v.revision, false),
                          settings.StaticDefinitionFile, s_.driver.Directory.LogFile, false));
            CaptureStaticData(false);
        }
        file_.close();
        syncTimer_->setEnabled(false);
        unsynced_ = false;
        if (hooks.info)
            hooks.info("Closed Log file " + settings.LogFilePath);
    }
    LogOpen = false;
    if (hooks.showLogging)
        hooks.showLogging(false);
    if (hooks.setMenus)
        hooks.setMenus(false);
}

void LogWriter::addComment(const std::string& text)
{
    const std::string clean = commentText(text, s_.globals.gListSep);
    if (!LogOpen || clean.empty())
        return;
    write(LogRows(s_.globals.gListSep).comment(stamp(captureNow()), clean));
}

void LogWriter::captureLearnedData()
{
    if (!LogOpen)
        return;
    std::string hex;
    const LogRows rows(s_.globals.gListSep);
    if (!s_.driver.GetFile(kLearnedFile, hex)) {
        write(rows.error(stamp(captureNow())));
        return;
    }
    const DynamicValue data = s_.driver.Conversion.FormatData(hex, 2, -1, 1, 0, 0);
    std::string text = data.toText(s_.driver.Conversion.locale());
    for (char& c : text)
        if (std::string(1, c) == s_.globals.gListSep)
            c = ',';
    write(rows.learned(stamp(captureNow()), text));
    s_.dialogs.notify(
        "Ra Data Captured", "Ra data has been captured and logged.", platform::Icon::Information);
}

void LogWriter::logChange(const clsSMBusParameter& parameter)
{
    if (!LogOpen)
        return;
    const auto& locale = s_.driver.Conversion.locale();
    write(LogRows(s_.globals.gListSep)
              .change(stamp(captureNow()), parameter.ParameterName, parameter.value.toText(locale),
                  parameter.NewValue.toText(locale)));
}

} // namespace zv
