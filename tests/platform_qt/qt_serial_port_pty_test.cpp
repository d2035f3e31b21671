// The real serial port and the real pump on a pseudo-terminal. These are the only tests that
// wait in real time, each for a fraction of a second.

#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/testing/memory_settings_store.h"
#include "platform_qt/pty.h"
#include "platform_qt/qt_app.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <vector>

using zv::platform::CommEvent;
using zv::platform::QtEventLoop;
using zv::platform::QtSerialPort;
using zv::test::Pty;

namespace {

struct PtyPort : ::testing::Test {
    void SetUp() override
    {
        (void)zv::test::qtApp();
        ASSERT_TRUE(pty.ok());
        port.onComm = [this](CommEvent event) { events.push_back(event); };
        port.setDevice(pty.slavePath());
        port.setSettings("115200,n,8,1");
        ASSERT_EQ(port.setPortOpen(true), 0) << port.errorText();
    }

    [[nodiscard]] int count(CommEvent kind) const
    {
        return static_cast<int>(std::count(events.begin(), events.end(), kind));
    }

    Pty pty;
    zv::platform::MemorySettingsStore store;
    QtEventLoop loop;
    QtSerialPort port { store };
    std::vector<CommEvent> events;
};

} // namespace

TEST_F(PtyPort, DataFromTheDeviceEndsAWaitEarly)
{
    QTimer::singleShot(40, [this] { pty.send("/OCC\r\n*"); });
    const auto start = std::chrono::steady_clock::now();
    const bool arrived = loop.waitUntil([this] { return port.inBufferCount() >= 7; }, 3000);
    const auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_TRUE(arrived);
    EXPECT_LT(waited, std::chrono::milliseconds(1500));

    EXPECT_EQ(port.input(), "/"); // standing InputLen 1
    port.setInputLen(0);
    EXPECT_EQ(port.input(), "OCC\r\n*");
    EXPECT_EQ(port.inBufferCount(), 0);
}

TEST_F(PtyPort, TimersRunDuringAWait)
{
    auto timer = loop.createTimer();
    int ticks = 0;
    timer->onTick = [&] {
        if (++ticks == 2)
            timer->setEnabled(false);
    };
    timer->setInterval(20);
    timer->setEnabled(true);
    EXPECT_TRUE(loop.waitUntil([&] { return ticks == 2; }, 2000));
    EXPECT_FALSE(timer->enabled()) << "stopped inside its own tick";
}

TEST_F(PtyPort, ReceiveEventsFollowTheThresholdAndSleepRunsNone)
{
    port.setRThreshold(3);
    ASSERT_TRUE(pty.send("ab"));
    loop.sleep(30); // the bytes are there, but no event may run
    EXPECT_TRUE(events.empty());
    EXPECT_FALSE(loop.waitUntil([this] { return !events.empty(); }, 100));
    EXPECT_EQ(port.inBufferCount(), 2);

    ASSERT_TRUE(pty.send("c"));
    EXPECT_TRUE(loop.waitUntil([this] { return !events.empty(); }, 2000));
    EXPECT_EQ(events, std::vector<CommEvent> { CommEvent::Receive });

    port.setInBufferCount(0);
    EXPECT_EQ(port.inBufferCount(), 0);
    EXPECT_EQ(port.input(), "");
}

TEST_F(PtyPort, WritesReachTheDeviceAndSettingsApplyWhileOpen)
{
    port.output(std::string("\x12\x12\x12/B2\r", 7));
    std::string seen;
    for (int i = 0; i < 5 && seen.size() < 7; ++i)
        seen += pty.receive(1000);
    EXPECT_EQ(seen, std::string("\x12\x12\x12/B2\r", 7));

    port.setSettings("19200,e,7,2");
    port.setSettings(",n,8,1"); // unreadable: the line stays as it was
    EXPECT_EQ(port.settings(), "19200,e,7,2");
    port.setHandshaking(2);
    EXPECT_EQ(port.handshaking(), 2);

    termios line {};
    const int slave = ::open(pty.slavePath().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (slave >= 0) { // an exclusive open refuses this for an ordinary user: checked where allowed
        ASSERT_EQ(::tcgetattr(slave, &line), 0);
        ::close(slave);
        EXPECT_EQ(::cfgetospeed(&line), static_cast<speed_t>(B19200));
        // A pseudo-terminal keeps 8 data bits without parity whatever is asked; the rest shows.
        EXPECT_TRUE(line.c_cflag & CSTOPB);
        EXPECT_TRUE(line.c_cflag & CRTSCTS);
    }
}

TEST_F(PtyPort, ASecondOpenOfAHeldDeviceIsRefusedAsInUse)
{
    QtSerialPort second { store };
    second.setDevice(pty.slavePath());
    EXPECT_EQ(second.setPortOpen(true), zv::platform::kPortErrorInUse);
    EXPECT_FALSE(second.portOpen());
    EXPECT_NE(second.errorText().find("in use"), std::string::npos) << second.errorText();

    // Through a link, as from the settings store, it is the same device.
    const auto link = std::filesystem::temp_directory_path() / ("zv-pty-link-" + std::to_string(::getpid()));
    std::filesystem::remove(link);
    std::filesystem::create_symlink(pty.slavePath(), link);
    store.setValue("Ports", "COM12", link.string());
    second.setCommPort(12);
    EXPECT_EQ(second.device(), link.string());
    EXPECT_EQ(second.setPortOpen(true), zv::platform::kPortErrorInUse);

    ASSERT_EQ(port.setPortOpen(false), 0);
    EXPECT_EQ(second.setPortOpen(true), 0) << second.errorText();
    std::filesystem::remove(link);
}

TEST_F(PtyPort, ADeviceThatGoesAwayClosesThePortWithOneEvent)
{
    pty.closeMaster();
    EXPECT_TRUE(loop.waitUntil([this] { return count(CommEvent::BreakOrError) > 0; }, 2000));
    EXPECT_FALSE(port.portOpen());
    EXPECT_FALSE(loop.waitUntil([this] { return count(CommEvent::BreakOrError) > 1; }, 100));
    EXPECT_EQ(count(CommEvent::BreakOrError), 1);
    EXPECT_EQ(port.input(), "");
    port.output("/O\r"); // a closed port swallows writes

    // The device is gone until it comes back; then the port opens again.
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);
    Pty back;
    ASSERT_TRUE(back.ok());
    port.setDevice(back.slavePath());
    ASSERT_EQ(port.setPortOpen(true), 0) << port.errorText();
    ASSERT_TRUE(back.send("*"));
    EXPECT_TRUE(loop.waitUntil([this] { return port.inBufferCount() > 0; }, 2000));
    EXPECT_EQ(port.input(), "*");
}

TEST(QtSerialPortOpen, MissingOrNonSerialDevicesGiveNoSuchPort)
{
    (void)zv::test::qtApp();
    zv::platform::MemorySettingsStore store;
    QtSerialPort port { store };

    port.setDevice("/dev/pts/999999");
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);
    EXPECT_FALSE(port.portOpen());
    EXPECT_NE(port.errorText().find("/dev/pts/999999"), std::string::npos);

    port.setCommPort(0);
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);
    port.setCommPort(40);
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);

    const auto plain = std::filesystem::temp_directory_path() / ("zv-plain-" + std::to_string(::getpid()));
    std::ofstream(plain) << "x";
    store.setValue("Ports", "COM2", plain.string());
    port.setCommPort(2);
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);
    std::filesystem::remove(plain);

    store.setValue("Ports", "COM3", "/dev/null"); // a character device, but no terminal
    port.setCommPort(3);
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);
    EXPECT_FALSE(port.portOpen());
}

// A device the user may not open says how to get access. Root may open anything, so the check
// runs in a child that drops to an ordinary user.
TEST(QtSerialPortOpen, ADeviceWithoutPermissionSaysHowToGetAccess)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root to drop to a user without access";
    Pty pty;
    ASSERT_TRUE(pty.ok());
    ASSERT_EQ(::chmod(pty.slavePath().c_str(), 0600), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        constexpr uid_t kNobody = 65534;
        if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0)
            ::_exit(2);
        zv::platform::MemorySettingsStore store;
        QtSerialPort port { store };
        port.setDevice(pty.slavePath());
        const int result = port.setPortOpen(true);
        const bool explains = port.errorText().find("'dialout' group") != std::string::npos
            && port.errorText().find("udev rule") != std::string::npos;
        ::_exit(result == zv::platform::kPortErrorPermissionDenied && explains ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
