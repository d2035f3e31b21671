#pragma once
// A small HLK dongle for the link's unit tests: answers each command line after a latency on
// the virtual clock. Replies to reads are queued by the test; everything else gets the
// dongle's standard answer unless the dongle is told to stay silent.

#include "platform/testing/memory_serial_port.h"
#include "platform/testing/virtual_event_loop.h"

#include <deque>
#include <string>
#include <vector>

namespace zv::test {

class FakeDongle {
public:
    FakeDongle(platform::MemorySerialPort& port, platform::VirtualEventLoop& loop)
        : port_(port)
        , loop_(loop)
    {
        port_.onOutput = [this](const std::string& bytes) { receive(bytes); };
    }

    bool silent = false;
    int latencyMs = 5;
    std::vector<std::string> commands; // every command line received, without CR
    std::deque<std::string> scriptedReplies; // replies for the next lines, in order, before the standard ones

    void send(const std::string& bytes) { port_.deliver(bytes); }

private:
    void receive(const std::string& bytes)
    {
        for (char c : bytes) {
            if (c == '\x12')
                continue;
            if (c != '\r') {
                line_ += c;
                continue;
            }
            commands.push_back(line_);
            answer(line_);
            line_.clear();
        }
    }

    void answer(const std::string& line)
    {
        if (silent || line.rfind("/B", 0) == 0)
            return;
        std::string reply;
        if (!scriptedReplies.empty()) {
            reply = scriptedReplies.front();
            scriptedReplies.pop_front();
        } else if (line == "/O") {
            reply = "/OCC\r\n*";
        } else if (line.rfind("/T", 0) == 0 || line.rfind("/*T", 0) == 0) {
            reply = "/MTC\r\n*";
        } else if (line.rfind("/R", 0) == 0) {
            reply = "/MRC~00~00~00\r\n*";
        } else {
            reply = "*";
        }
        loop_.post(latencyMs, [this, reply] { port_.deliver(reply); });
    }

    platform::MemorySerialPort& port_;
    platform::VirtualEventLoop& loop_;
    std::string line_;
};

} // namespace zv::test
