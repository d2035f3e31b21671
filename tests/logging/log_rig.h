#pragma once
// The log writer over the driver and the in-process pack, with a folder of its own for the
// definition files and the log, and the date and time of an en_US desktop (M/d/yyyy, h:mm:ss AM).

#include "logging/log_writer.h"
#include "platform/atomic_file.h"
#include "support/sim_harness.h"

#include <ctime>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace zv::test {

inline std::tm utc(std::chrono::system_clock::time_point when)
{
    const std::time_t t = std::chrono::system_clock::to_time_t(when);
    std::tm tm {};
    gmtime_r(&t, &tm);
    return tm;
}

inline std::string usDate(std::chrono::system_clock::time_point when)
{
    const std::tm tm = utc(when);
    return std::to_string(tm.tm_mon + 1) + "/" + std::to_string(tm.tm_mday) + "/"
        + std::to_string(tm.tm_year + 1900);
}

inline std::string usTime(std::chrono::system_clock::time_point when)
{
    const std::tm tm = utc(when);
    char rest[16];
    std::strftime(rest, sizeof rest, ":%M:%S %p", &tm);
    return std::to_string(tm.tm_hour % 12 == 0 ? 12 : tm.tm_hour % 12) + rest;
}

class LogRig {
public:
    LogRig()
        : folder(std::filesystem::temp_directory_path()
            / ("zv-logging-" + std::to_string(::getpid()) + "-" + std::to_string(++serial())))
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        // 2026-11-19 01:26:39 UTC
        sim.loop.setWallClock(std::chrono::system_clock::time_point(std::chrono::seconds(1795051599)));
        sim.globals.gNodeCount = 12;
    }
    ~LogRig() { std::filesystem::remove_all(folder); }

    [[nodiscard]] bool connect() { return sim.connect(); }

    // The writer, made once the driver is connected.
    LogWriter& writer()
    {
        if (!writer_) {
            LogWriterHooks hooks;
            hooks.date = usDate;
            hooks.time = usTime;
            writer_ = std::make_unique<LogWriter>(LogWriterServices { sim.driver(), sim.globals, sim.settings,
                                                      sim.dialogs, sim.loop, programFolder() },
                std::move(hooks));
            writer_->settings.LogFilePath = (folder / "log.csv").string();
            writer_->settings.StaticDefinitionFile = kNotDefined;
        }
        return *writer_;
    }

    std::string file(const std::string& name, const std::string& text)
    {
        const auto path = folder / name;
        std::ofstream(path, std::ios::binary) << text;
        return path.string();
    }

    // The log's lines without their CR LF; a line left without one is marked.
    [[nodiscard]] std::vector<std::string> lines() const
    {
        const std::string text
            = std::filesystem::exists(folder / "log.csv") ? readWholeFile((folder / "log.csv").string()) : "";
        std::vector<std::string> result;
        std::size_t start = 0;
        while (start < text.size()) {
            const auto end = text.find("\r\n", start);
            if (end == std::string::npos) {
                result.push_back(text.substr(start) + "<no CR LF>");
                break;
            }
            result.push_back(text.substr(start, end - start));
            start = end + 2;
        }
        return result;
    }

    // Starts a session outside a poll with this comment.
    bool start(const std::string& comment)
    {
        sim.dialogs.answerInput(comment);
        return writer().StartLogging();
    }

    // One good poll sample and its log row.
    void sample()
    {
        sim.globals.PollingActive = true;
        writer().UpdateLogFile();
    }

    std::filesystem::path folder;
    SimHarness sim;

private:
    static int& serial()
    {
        static int n = 0;
        return n;
    }
    std::unique_ptr<LogWriter> writer_;
};

} // namespace zv::test
