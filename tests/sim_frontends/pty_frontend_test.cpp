// The dongle on a real pseudo-terminal, opened from the host's side as a serial port would be.
// The loop is driven step by step; each step returns as soon as the pty has data.

#include "fake_target.h"
#include "frontends/pty_frontend.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

namespace zvsim {
namespace {

using testing::FakeTarget;

std::int64_t steadyUs()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

class PtyFrontEndTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(pty.open(), ""); }
    void TearDown() override { closeHost(); }

    void openHost(speed_t speed = B19200)
    {
        host = ::open(pty.devicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        ASSERT_GE(host, 0);
        termios settings {};
        ::tcgetattr(host, &settings);
        ::cfmakeraw(&settings);
        ::cfsetispeed(&settings, speed);
        ::cfsetospeed(&settings, speed);
        ::tcsetattr(host, TCSANOW, &settings);
    }
    void closeHost()
    {
        if (host >= 0)
            ::close(host);
        host = -1;
    }

    // Serves until the host has read `prompts` prompt characters or the steps run out (a few
    // steps are enough to show that no answer comes).
    std::string exchange(std::string_view command, int prompts = 1, int steps = 40)
    {
        EXPECT_EQ(::write(host, command.data(), command.size()), static_cast<ssize_t>(command.size()));
        std::string reply;
        Servable* servables[] = { &pty };
        for (int step = 0; step < steps && std::count(reply.begin(), reply.end(), '*') < prompts; ++step) {
            EXPECT_TRUE(serveOnce(servables, steadyUs, 50));
            char buffer[256];
            const ssize_t count = ::read(host, buffer, sizeof buffer);
            if (count > 0)
                reply.append(buffer, static_cast<std::size_t>(count));
        }
        return reply;
    }

    FakeTarget target;
    HlkDongle dongle { target };
    PtyFrontEnd pty { dongle, false };
    int host = -1;
};

// The wire table itself is the dongle engine's; here only that it reaches the device.
TEST_F(PtyFrontEndTest, AnswersThroughTheDevice)
{
    openHost();
    EXPECT_EQ(exchange("/K2\r/I10\r/D16\r/G0\r", 4), "****");
    EXPECT_EQ(exchange("/O\r"), "/OCC\r\n*");
    target.replies.push_back({ 0x02, 0x10, 0x20, 0x00 });
    EXPECT_EQ(exchange("/*T~3F\r/R~00\r", 2), "/MTC\r\n*/MRC~02~10~20~00\r\n*");
}

TEST_F(PtyFrontEndTest, HostMayCloseAndReopenThePort)
{
    openHost();
    EXPECT_EQ(exchange("/F1\r"), "*");
    closeHost();
    Servable* servables[] = { &pty };
    EXPECT_TRUE(serveOnce(servables, steadyUs, 0));
    EXPECT_TRUE(pty.isOpen());
    openHost();
    EXPECT_EQ(exchange("/G0\r"), "*");
}

TEST_F(PtyFrontEndTest, TheHostsBaudRateIsSeenThroughThePty)
{
    openHost(B115200);
    EXPECT_EQ(exchange("/F1\r", 1, 3), "") << "the dongle is at 19200 after power-on";
    closeHost();
    openHost(B19200);
    EXPECT_EQ(exchange("/B2\r", 1, 3), "");
    closeHost();
    openHost(B115200);
    EXPECT_EQ(exchange("/F1\r"), "*");
}

TEST_F(PtyFrontEndTest, LinkPointsToTheDeviceAndGoesWithIt)
{
    const auto link = std::filesystem::temp_directory_path() / ("zvsim-pty-" + std::to_string(::getpid()));
    ASSERT_EQ(pty.makeLink(link.string()), "");
    EXPECT_EQ(std::filesystem::read_symlink(link).string(), pty.devicePath());
    ASSERT_EQ(pty.makeLink(link.string()), "") << "an old link is replaced";
    pty.close();
    EXPECT_FALSE(std::filesystem::is_symlink(link));
}

TEST(PtyPull, PullingThePackClosesThePty)
{
    FakeTarget target;
    HlkOptions options;
    options.startMs = steadyUs() / 1000;
    options.faults.pullAfterMs = 0;
    HlkDongle dongle(target, options);
    PtyFrontEnd pty(dongle, false);
    ASSERT_EQ(pty.open(), "");
    const int host = ::open(pty.devicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(host, 0);
    Servable* servables[] = { &pty };
    EXPECT_TRUE(serveOnce(servables, steadyUs, 0));
    EXPECT_FALSE(pty.isOpen());
    char byte = 0;
    EXPECT_LE(::read(host, &byte, 1), 0) << "the host's port has hung up";
    ::close(host);
}

// The pacer on its own: an answer is due on the microsecond its last character has crossed the
// line, after the host's command and after any answer still on the line; no rounding.
TEST(WirePacerTest, AnswersAreDueOnTheMicrosecond)
{
    struct Step {
        std::int64_t nowUs;
        std::size_t in;
        std::size_t out;
        int baud;
        std::int64_t dueUs;
    };
    const struct {
        const char* name;
        bool enabled;
        std::vector<Step> steps;
    } cases[] {
        { "off: at once", false, { { 1000, 4, 1, 19200, 1000 } } },
        // 4 characters in (2083 us) and 1 out (520 us) at 19200.
        { "one exchange", true, { { 1000, 4, 1, 19200, 3603 } } },
        // 13 in (1128 us), 5 out (434 us) at 115200: the poll's status line and "/MTC" pace.
        { "fast line", true, { { 7, 13, 5, 115200, 7 + 1128 + 434 } } },
        // A second command handed over while the first answer is still on the line waits for it.
        { "queued", true, { { 0, 4, 1, 19200, 2603 }, { 100, 3, 7, 19200, 2603 + 3645 } } },
        // Once the line is free the next answer starts from its own command again.
        { "line free again", true, { { 0, 4, 1, 19200, 2603 }, { 10'000, 4, 1, 19200, 12'603 } } },
    };
    for (const auto& c : cases) {
        WirePacer pacer(c.enabled);
        for (const auto& step : c.steps)
            EXPECT_EQ(pacer.replyDueUs(step.nowUs, step.in, step.out, step.baud), step.dueUs) << c.name;
    }
}

// The USB adapter's answers are paced by their SMBus transactions at 100 kHz (10 us a bit).
TEST(WirePacerTest, UsbAnswersTakeTheirSmbusTransaction)
{
    const struct {
        const char* request;
        const char* answer;
        std::int64_t us;
    } cases[] {
        { "WRITEWORD 0B 00 21 6E", "0", (5 * 9 + 2) * 10 }, // address, command, two data, PEC
        { "READWORD 0B 3D", "0 00 FF", (6 * 9 + 3) * 10 }, // the address again, repeated start
        { "WRITEBLOCK 0B 3C 06 00 04 00 00 10 00", "0", (10 * 9 + 2) * 10 },
        { "READBLOCK 0B 3F", "0 03 AA BB CC", (8 * 9 + 3) * 10 }, // the count, three bytes
        { "CONNECT", "0", 0 },
        { "VERSION", "0 ZV-USB-BRIDGE simulator 1.0", 0 },
    };
    for (const auto& c : cases)
        EXPECT_EQ(WirePacer::smbusTimeUs(c.request, c.answer), c.us) << c.request;
}

// The front end on a virtual microsecond clock: the command read at 1 s is answered at
// 1 s + 2603 us, not a microsecond earlier, not rounded to the next millisecond.
TEST(PtyPacing, TheAnswerGoesOutOnItsMicrosecond)
{
    FakeTarget target;
    HlkDongle dongle(target);
    PtyFrontEnd pty(dongle, true);
    ASSERT_EQ(pty.open(), "");
    const int host = ::open(pty.devicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(host, 0);
    termios settings {};
    ::tcgetattr(host, &settings);
    ::cfmakeraw(&settings);
    ::cfsetispeed(&settings, B19200);
    ::cfsetospeed(&settings, B19200);
    ::tcsetattr(host, TCSANOW, &settings);

    std::int64_t clockUs = 1'000'000;
    const std::function<std::int64_t()> clock = [&] { return clockUs; };
    Servable* servables[] = { &pty };
    ASSERT_TRUE(serveOnce(servables, clock, 0)); // the first look for broadcasts
    const auto idleDue = pty.nextDueUs();
    ASSERT_EQ(::write(host, "/F1\r", 4), 4);
    // Each step returns as soon as the pty has the command; the clock stands still meanwhile.
    for (int step = 0; step < 40 && pty.nextDueUs() == idleDue; ++step)
        ASSERT_TRUE(serveOnce(servables, clock, 50));
    EXPECT_EQ(pty.nextDueUs(), 1'002'603);

    const auto hostReads = [&](int timeoutMs) {
        pollfd fd { host, POLLIN, 0 };
        std::string text;
        if (::poll(&fd, 1, timeoutMs) > 0) {
            char buffer[64];
            const ssize_t count = ::read(host, buffer, sizeof buffer);
            if (count > 0)
                text.assign(buffer, static_cast<std::size_t>(count));
        }
        return text;
    };
    clockUs = 1'002'602;
    ASSERT_TRUE(serveOnce(servables, clock, 0));
    EXPECT_EQ(pty.nextDueUs(), 1'002'603) << "still on the line";
    clockUs = 1'002'603;
    ASSERT_TRUE(serveOnce(servables, clock, 0));
    EXPECT_EQ(hostReads(1000), "*");
    EXPECT_EQ(pty.nextDueUs(), idleDue) << "nothing left to send";
    ::close(host);
}

} // namespace
} // namespace zvsim
