// The dongle on a real pseudo-terminal, opened from the host's side as a serial port would be.
// The loop is driven step by step; each step returns as soon as the pty has data.

#include "fake_target.h"
#include "frontends/pty_frontend.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

namespace zvsim {
namespace {

using testing::FakeTarget;

std::int64_t steadyMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
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
            EXPECT_TRUE(serveOnce(servables, steadyMs, 50));
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
    EXPECT_TRUE(serveOnce(servables, steadyMs, 0));
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
    options.startMs = steadyMs();
    options.faults.pullAfterMs = 0;
    HlkDongle dongle(target, options);
    PtyFrontEnd pty(dongle, false);
    ASSERT_EQ(pty.open(), "");
    const int host = ::open(pty.devicePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(host, 0);
    Servable* servables[] = { &pty };
    EXPECT_TRUE(serveOnce(servables, steadyMs, 0));
    EXPECT_FALSE(pty.isOpen());
    char byte = 0;
    EXPECT_LE(::read(host, &byte, 1), 0) << "the host's port has hung up";
    ::close(host);
}

} // namespace
} // namespace zvsim
