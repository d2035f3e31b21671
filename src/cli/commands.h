#pragma once
// The commands of zentavia-cli. Each writes its result to `out` and throws CliError on failure.

#include "cli/sbd_notation.h"

#include <iosfwd>
#include <string>

namespace zv::cli {

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
// capture-demo [FILE]: the capture of the attached device that demo mode runs from.
void runCaptureDemo(CliSession& session, const std::string& file, std::ostream& out);

} // namespace zv::cli
