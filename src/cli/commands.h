#pragma once
// The commands of zentavia-cli. Each writes its result to `out` and throws CliError on failure.

#include "cli/sbd_notation.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace zv {
class clsCellWeft;
class ParameterList;
} // namespace zv

namespace zv::cli {

// The parameters of the gateway (node 0) or of cell `node`; CliError for a cell the pack lacks.
[[nodiscard]] ParameterList& parameterList(clsCellWeft& driver, int node);

class CliSession;

// detect: the target as detection found it, then the directory table.
void runDetect(CliSession& session, std::ostream& out);
// dir: the directory table.
void runDir(CliSession& session, std::ostream& out);
// read-file N: device file N as upper-case hex text, one record a line.
void runReadFile(CliSession& session, int file, std::ostream& out);
// get NAME [--node N] [--raw]: one parameter read from the device; node 0 is the gateway. The
// value as the main window shows it (bit-encoded words in hex, the manufacture date as a date),
// or with `raw` the number as read.
void runGet(CliSession& session, const std::string& name, int node, bool raw, std::ostream& out);
struct SbReadRequest {
    int command = 0;
    bool block = false;
    SbdFormat format {};
    bool extended = false; // keep the extended command set open
};
// sbread CMD [--block]: an SMBus word or block read.
void runSbRead(CliSession& session, const SbReadRequest& request, std::ostream& out);
struct PollRequest {
    std::optional<int> count; // --count: samples; none: until stopped
    int rateSeconds = 1; // --rate: seconds between samples
    std::string logFile; // --log: the CSV log; empty: no log
    std::string comment; // --comment: the session's comment
    std::optional<std::string> dynamicDefinition; // --dlog; none: the setting
    std::optional<std::string> staticDefinition; // --slog; none: the setting
};
// poll: one line per sample (time, pack voltage, current, RSOC, temperature, cell voltages) and,
// with --log, the CSV log of the log writer. SIGINT and SIGTERM end the poll and close the log.
void runPoll(CliSession& session, const PollRequest& request, std::ostream& out);
// capture-demo [FILE]: the capture of the attached device that demo mode runs from.
void runCaptureDemo(CliSession& session, const std::string& file, std::ostream& out);

// save-cal FILE: the device's calibration data to a .cal file.
void runSaveCal(CliSession& session, const std::string& file, std::ostream& out);
// restore-cal FILE [--yes]: a .cal file to the device and committed; a size mismatch goes on only
// with --yes.
void runRestoreCal(CliSession& session, const std::string& file, bool yes, std::ostream& out);
// calibrate STEP ARGUMENTS...: one calibration step in calibration mode, then what the device
// reports.
void runCalibrate(CliSession& session, const std::vector<std::string>& arguments, std::ostream& out);
// Pack configurations and data-sets, on the flows of the main window's file menu.
// save-config FILE.dat: the pack configuration read from the device into a .dat.
void runSaveConfig(CliSession& session, const std::string& file, std::ostream& out);
// load-config FILE [--relearn]: a .dat, .tmap, .aux or .sbd written to the device, committed,
// the device initialized and detected again.
void runLoadConfig(CliSession& session, const std::string& file, bool relearn, std::ostream& out);
// export-xml FILE.dat: the .xml beside it, verified by reading it back.
void runExportXml(CliSession& session, const std::string& file, std::ostream& out);
// save-dataset FILE.ppcsv and load-dataset FILE.ppcsv.
void runSaveDataSet(CliSession& session, const std::string& file, std::ostream& out);
void runLoadDataSet(CliSession& session, const std::string& file, std::ostream& out);
// set NAME VALUE [--node N]: one parameter written, read back and printed.
void runSet(
    CliSession& session, const std::string& name, const std::string& value, int node, std::ostream& out);
// commit: RAM to flash.
void runCommit(CliSession& session, std::ostream& out);

// Exit codes of firmware and sysinfo besides 0, 1 and 2.
inline constexpr int kExitImageRefused = 3;
inline constexpr int kExitDownloadFailed = 4;
inline constexpr int kExitNotVerified = 5;
struct FirmwareRequest {
    std::string image; // FILE.enc
    std::string preserveCal; // --preserve-cal FILE.cal: carry the calibration across (target 1001)
    bool yes = false; // --yes: answer the questions with yes
};
// firmware FILE.enc: the system information, the image checked against the target, the download
// with its progress on `progress`, the reset wait, the verification, the system information again.
void runFirmware(
    CliSession& session, const FirmwareRequest& request, std::ostream& out, std::ostream& progress);
// sysinfo: what the device reports about its images, and the verification.
void runSysinfo(CliSession& session, std::ostream& out);

} // namespace zv::cli
