// The fault matrix: every fault the simulator offers, at a rate a pack survives in the field and
// at 100 %, over the dongle and the USB adapter, against one poll sample of the driver (scaling,
// dynamic data, cell data). At the low rate the sample succeeds; at 100 % it fails with the
// message that names the fault, within its bound. The table is printed with the test output.

#include "usb/line_usb_adapter.h"

#include "frontends/link_faults.h"
#include "frontends/usb_adapter.h"
#include "support/child_process.h"
#include "support/sim_harness.h"

#include <chrono>
#include <cstdio>
#include <optional>

#include <gtest/gtest.h>

namespace zv::test {
namespace {

enum class Transport { Dongle, Usb };

// The adapter's line protocol handed to the simulator's USB front end; a pulled pack closes the
// line, and the adapter opens it again once the pack is back.
class MatrixUsbAdapter : public LineUsbAdapter {
public:
    MatrixUsbAdapter(std::unique_ptr<zvsim::UsbAdapter>& sim, const platform::EventLoop& clock)
        : sim_(sim)
        , clock_(clock)
    {
    }

protected:
    bool openLine() override { return open_ = !sim_->pulled(); }
    void closeLine() override { open_ = false; }
    [[nodiscard]] bool lineOpen() const override { return open_; }
    std::optional<std::string> exchange(const std::string& request) override
    {
        sim_->checkPulled(clock_.milliseconds());
        if (sim_->pulled()) {
            closeLine();
            return std::nullopt;
        }
        return sim_->handle(request, clock_.milliseconds());
    }

private:
    std::unique_ptr<zvsim::UsbAdapter>& sim_;
    const platform::EventLoop& clock_;
    bool open_ = false;
};

struct Outcome {
    bool ok = false;
    std::int64_t ms = 0;
    std::string message; // the last error the user or the event log was given
};

class FaultBench : public SimHarness {
public:
    explicit FaultBench(Transport transport)
        : transport_(transport)
        , usb_(std::make_unique<zvsim::UsbAdapter>(*pack))
    {
        if (transport == Transport::Usb) {
            globals.gTransport = kTransportUsbAdapter;
            adjustServices = [this](CellWeftServices& services) {
                services.usbAdapter = [this] { return std::make_unique<MatrixUsbAdapter>(usb_, loop); };
            };
        }
        main().hooks.smbusError = [this](int, const std::string& text) { messages_.push_back(text); };
        main().hooks.fileAccessStatus = [this](const std::string& text, int) { messages_.push_back(text); };
    }

    [[nodiscard]] bool connectClean()
    {
        if (transport_ == Transport::Usb) {
            auto& usb = driver().Usb;
            return usb.usbOpen() != "-1" && usb.usbUnlockDevice() == 0 && usb.usbEnableUlmarCommandSet()
                && loadTarget();
        }
        return connect();
    }

    // The faults from now on: the link's in a new front end, the pack's in the pack.
    void inject(const zvsim::FaultPlan& plan)
    {
        pack->faults() = plan.device;
        if (transport_ == Transport::Usb) {
            usb_ = std::make_unique<zvsim::UsbAdapter>(
                *pack, zvsim::UsbAdapterOptions { plan.link, 7, loop.milliseconds() });
            (void)driver().Usb.reconnect();
        } else {
            // A new dongle powers up unconfigured; its settings commands always answer.
            replaceEndpoint({ zvsim::HlkOptions { plan.link, 7, loop.milliseconds() } });
            (void)driver().SMBus_Init();
        }
    }

    // The pulled pack comes back on the same port or socket.
    void plugBackIn()
    {
        if (transport_ == Transport::Usb) {
            usb_ = std::make_unique<zvsim::UsbAdapter>(*pack);
            return;
        }
        replaceEndpoint({});
        port.plugIn();
    }

    [[nodiscard]] bool sample()
    {
        std::string text;
        auto& d = driver();
        return d.GetFile(1, text) && d.GetFile(4, text) && d.GetScaling();
    }

    // What the poll does: samples a second apart; after a failed one the link is rebuilt before
    // the next. With `all` every sample must succeed, else the first good one ends the run.
    [[nodiscard]] Outcome pollSamples(int samples, bool all)
    {
        messages_.clear();
        // Boxes (a PEC error shows one) are answered with OK.
        for (int i = 0; i < 64; ++i)
            dialogs.answerMessage(platform::Answer::OK);
        const auto boxesBefore = dialogs.shown().size();
        const auto start = loop.milliseconds();
        Outcome outcome;
        int good = 0;
        for (int i = 0; i < samples; ++i) {
            loop.sleep(1000);
            if (i > 0 && !all && !driver().RecoverLink())
                continue;
            const bool ok = sample();
            good += ok ? 1 : 0;
            if (all ? !ok : ok)
                break;
        }
        outcome.ok = all ? good == samples : good > 0;
        outcome.ms = loop.milliseconds() - start;
        if (dialogs.shown().size() > boxesBefore)
            messages_.push_back(dialogs.shown().back().text);
        if (!messages_.empty())
            outcome.message = messages_.back();
        return outcome;
    }

private:
    Transport transport_;
    std::unique_ptr<zvsim::UsbAdapter> usb_;
    std::vector<std::string> messages_;
};

struct MatrixRow {
    const char* fault; // as --faults takes it
    const char* rate; // the column's words
    bool survives;
    // When it fails: a part of the message it must give, over the dongle and over the adapter.
    const char* dongleMessage = "";
    const char* usbMessage = "";
    int samples = 10; // a survived fault: this many samples in a row, each good
    bool recovers = false; // the poll's recovery between samples is part of the operation
};

// Bound of a failing sample: the request limit (15 s), the rebuild of the link and the pause
// before the sample.
constexpr std::int64_t kFailBoundMs = 20000;
// A surviving sample, a second after the one before: retries and a pack restart included.
constexpr std::int64_t kSurviveBoundMs = 5000;

const MatrixRow kRows[] = {
    { "noack:0.05", "5 %", true },
    { "noack:0.2", "20 %", true },
    { "noack:1", "100 %", false, "/SNA", "did not acknowledge" },
    { "pec:0.05", "5 %", true },
    { "pec:1", "100 %", false, "Error in PEC", "PEC error" },
    { "busy:3", "3 polls", true },
    { "busy:1000000", "always", false, "stayed busy too long", "stayed busy too long" },
    { "status:130", "code 130", true },
    { "status:5", "code 5", false, "The request can't be done", "The request can't be done" },
    { "lost:0.05", "5 %", true },
    { "lost:1", "100 %", false, "Timeout waiting for response", "no answer from the adapter" },
    { "cut:0.05", "5 %", true },
    { "cut:1", "100 %", false, "Timeout waiting for response", "no answer from the adapter" },
    { "stuck:0.05", "5 %", true },
    { "stuck:1", "100 %", false, "Unexpected reply", "no answer from the adapter" },
    { "restart:0.05", "5 %", true },
    { "restart:1", "100 %", false, "/SNA", "did not acknowledge" },
    { "alarm:0.05", "5 %", true },
    { "alarm:1", "100 %", true },
    { "pull:0.5", "back after 3 s", true, "", "", 6, true },
    { "pull:0.5", "for good", false, "has not been opened", "not connected", 3, true },
};

std::string cell(const char* text, int width)
{
    std::string s(text);
    s.resize(static_cast<std::size_t>(width), ' ');
    return s;
}

// The outcome column: "ok", or the cause of the failure (after "ms: " in the link's message).
std::string outcomeText(const Outcome& outcome)
{
    if (outcome.ok)
        return "ok";
    std::string cause = outcome.message;
    if (const auto at = cause.find(" ms: "); at != std::string::npos)
        cause = cause.substr(at + 5);
    if (cause.size() > 44)
        cause = cause.substr(0, 41) + "...";
    return "failed: " + cause;
}

TEST(FaultMatrix, EachFaultIsSurvivedAtItsFieldRateAndReportedAtFullRate)
{
    std::string table = "fault          rate            transport  outcome                                   "
                        "            time\n";
    for (const Transport transport : { Transport::Dongle, Transport::Usb }) {
        for (const MatrixRow& row : kRows) {
            const char* transportName = transport == Transport::Dongle ? "dongle" : "usb";
            SCOPED_TRACE(std::string(row.fault) + " " + row.rate + " " + transportName);
            FaultBench bench(transport);
            ASSERT_TRUE(bench.connectClean());
            const auto parsed = zvsim::parseFaultList(row.fault);
            ASSERT_EQ(parsed.error, "");
            bench.inject(parsed.plan);
            const bool pull = parsed.plan.link.pullAfterMs.has_value();
            if (pull && row.survives)
                bench.loop.post(3000, [&bench] { bench.plugBackIn(); });
            const Outcome outcome = bench.pollSamples(row.survives ? row.samples : 1, !row.recovers);

            const bool asExpected = outcome.ok == row.survives;
            EXPECT_TRUE(asExpected) << "last message: " << outcome.message;
            const char* message = transport == Transport::Dongle ? row.dongleMessage : row.usbMessage;
            const bool rightMessage = row.survives || outcome.message.find(message) != std::string::npos;
            EXPECT_TRUE(rightMessage) << outcome.message;
            const bool inBound = outcome.ms <= (row.survives ? kSurviveBoundMs * row.samples : kFailBoundMs);
            EXPECT_TRUE(inBound) << outcome.ms << " ms";

            char line[256];
            std::snprintf(line, sizeof line, "%s %s %s %s %6.1f s  %s\n", cell(row.fault, 14).c_str(),
                cell(row.rate, 15).c_str(), cell(transportName, 10).c_str(),
                cell(outcomeText(outcome).c_str(), 52).c_str(), static_cast<double>(outcome.ms) / 1000.0,
                asExpected && rightMessage && inBound ? "green" : "RED");
            table += line;
        }
    }
    std::printf("\n%s\n", table.c_str());
}

} // namespace
} // namespace zv::test

namespace zv::test {
namespace {

// The same at field rates once through the real programs: zentavia-packsim's dongle on a
// pseudo-terminal, zentavia-cli reading a value through the real serial port. Waits only on the
// children.
TEST(FaultMatrix, TheRealProgramsReadThroughFieldFaultsOnAPseudoTerminal)
{
    const std::string faults = "noack:0.05,pec:0.05,alarm:0.05,busy:3";
    ChildProcess packsim(ZENTAVIA_PACKSIM, { "--pty", "--faults", faults, "--seed", "7" });
    ASSERT_TRUE(packsim.started());
    const auto line = packsim.waitForLine("HLK dongle on ", 10000);
    ASSERT_TRUE(line) << packsim.output() << packsim.errors();
    const std::string device = line->substr(line->find("/dev/"));

    const auto start = std::chrono::steady_clock::now();
    ChildProcess cli(ZENTAVIA_CLI, { "--port", device, "get", "Pack Voltage" });
    ASSERT_TRUE(cli.started());
    const auto status = cli.waitForExit(120000);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ASSERT_TRUE(status) << "zentavia-cli did not end";
    EXPECT_EQ(*status, 0) << cli.errors();
    EXPECT_NE(cli.output().find("Pack Voltage: "), std::string::npos) << cli.output();
    std::printf("\n%s %s %s %s %6.1f s  %s\n\n", cell(faults.c_str(), 38).c_str(), cell("pty", 10).c_str(),
        cell(*status == 0 ? "ok" : "failed", 52).c_str(), "", seconds, *status == 0 ? "green" : "RED");
}

} // namespace
} // namespace zv::test
