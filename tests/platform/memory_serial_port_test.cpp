#include "platform/testing/memory_serial_port.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using zv::platform::CommEvent;
using zv::platform::MemorySerialPort;

namespace {

struct OpenPort : ::testing::Test {
    void SetUp() override
    {
        port.onComm = [this](CommEvent event) { events.push_back(event); };
        ASSERT_EQ(port.setPortOpen(true), 0);
    }
    MemorySerialPort port;
    std::vector<CommEvent> events;
};

} // namespace

TEST(MemorySerialPortOpen, MissingAndBusyPortsGiveTheirErrorNumbers)
{
    MemorySerialPort port;
    port.setMissing(3);
    port.setBusy(4);
    port.setBusy("/dev/pts/7");

    port.setCommPort(3);
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);
    EXPECT_FALSE(port.portOpen());
    EXPECT_FALSE(port.errorText().empty());
    port.setCommPort(4);
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorInUse);
    port.setDevice("/dev/pts/7");
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorInUse);
    EXPECT_EQ(port.commPort(), 0);

    port.setBusy(4, false);
    port.setCommPort(4);
    EXPECT_EQ(port.setPortOpen(true), 0);
    EXPECT_TRUE(port.portOpen());
    EXPECT_TRUE(port.errorText().empty());
    EXPECT_EQ(port.device(), "COM4");
}

TEST_F(OpenPort, InputTakesInputLenCharactersAndZeroTakesAll)
{
    EXPECT_EQ(port.inputLen(), 1);
    EXPECT_EQ(port.input(), "");
    port.deliver("/MTC\r\n*");
    EXPECT_EQ(port.inBufferCount(), 7);
    EXPECT_EQ(port.input(), "/");
    port.setInputLen(3);
    EXPECT_EQ(port.input(), "MTC");
    port.setInputLen(0);
    EXPECT_EQ(port.input(), "\r\n*");
    EXPECT_EQ(port.input(), "");

    port.deliver(std::string("\x12\0\xFF", 3)); // any 8-bit character passes
    port.setInBufferCount(0);
    EXPECT_EQ(port.inBufferCount(), 0);
}

TEST_F(OpenPort, ReceiveEventsFollowTheThreshold)
{
    port.deliver("ab");
    EXPECT_TRUE(events.empty()); // threshold 0: silent

    port.setRThreshold(4);
    port.deliver("c");
    EXPECT_TRUE(events.empty());
    port.deliver("d");
    EXPECT_EQ(events, std::vector<CommEvent> { CommEvent::Receive });

    // The handler may take the data away as the receive parser does.
    port.setInputLen(1);
    port.onComm = [this](CommEvent) {
        while (port.inBufferCount() > 0)
            (void)port.input();
    };
    port.deliver("e");
    EXPECT_EQ(port.inBufferCount(), 0);
}

TEST_F(OpenPort, WritesReachTheDeviceSideOnlyWhileOpen)
{
    std::vector<std::string> seen;
    port.onOutput = [&](const std::string& data) { seen.push_back(data); };
    port.output("/F1\r");
    port.output(std::string(3, '\x12'));
    EXPECT_EQ(seen, (std::vector<std::string> { "/F1\r", "\x12\x12\x12" }));
    EXPECT_EQ(port.written(), "/F1\r\x12\x12\x12");

    ASSERT_EQ(port.setPortOpen(false), 0);
    port.output("/O\r");
    port.deliver("*");
    EXPECT_EQ(seen.size(), 2u);
    EXPECT_EQ(port.inBufferCount(), 0);
    EXPECT_EQ(port.input(), "");
}

TEST_F(OpenPort, APulledDeviceClosesTheLinkOnceAndStaysAwayUntilPluggedIn)
{
    port.deliver("/MR");
    port.pull();
    EXPECT_EQ(events, std::vector<CommEvent> { CommEvent::BreakOrError });
    EXPECT_FALSE(port.portOpen());
    EXPECT_EQ(port.inBufferCount(), 0);

    port.pull();
    EXPECT_EQ(events.size(), 1u);
    EXPECT_EQ(port.setPortOpen(true), zv::platform::kPortErrorNoSuchPort);

    port.plugIn();
    EXPECT_EQ(port.setPortOpen(true), 0);
    EXPECT_EQ(port.openCount(), 2);
    port.deliver("*");
    EXPECT_EQ(port.input(), "*");
}
