// The USB adapter endpoint: its request lines, the PEC it computes and checks, its faults, and its
// socket server.

#include "fake_target.h"
#include "frontends/usb_socket_server.h"

#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace zvsim {
namespace {

using testing::FakeTarget;

class UsbAdapterTest : public ::testing::Test {
protected:
    std::string ask(UsbAdapter& adapter, std::string_view request) { return adapter.handle(request, 0); }
    UsbAdapter connected(LinkFaults faults = {})
    {
        UsbAdapter adapter(target, { faults, 3, 0 });
        EXPECT_EQ(ask(adapter, "CONNECT"), "0");
        return adapter;
    }
    FakeTarget target;
};

TEST_F(UsbAdapterTest, OperationsNeedConnectFirst)
{
    UsbAdapter adapter(target);
    EXPECT_EQ(ask(adapter, "VERSION"), "0 ZV-USB-BRIDGE simulator 1.0");
    EXPECT_EQ(ask(adapter, "CONFIGURE 1 1 1"), "0");
    EXPECT_EQ(ask(adapter, "READWORD 0B 00"), "5");
    EXPECT_EQ(ask(adapter, "connect"), "0");
    target.queueWord(0x00, 0x1001);
    EXPECT_EQ(ask(adapter, "READWORD 0B 00"), "0 10 01");
    adapter.disconnect();
    EXPECT_EQ(ask(adapter, "READWORD 0B 00"), "5");
}

TEST_F(UsbAdapterTest, WritesCarryThePecTheAdapterComputes)
{
    auto adapter = connected();
    EXPECT_EQ(ask(adapter, "WRITEWORD 0B 09 34 12"), "0");
    EXPECT_EQ(target.writes.back(),
        (std::vector<std::uint8_t> { 0x09, 0x34, 0x12, smbusPec({ 0x16, 0x09, 0x34, 0x12 }) }));
    EXPECT_EQ(ask(adapter, "WRITEBLOCK 0B 3C 06 00 05 00 00 01 00"), "0");
    EXPECT_EQ(target.writes.back().size(), 9u);
    EXPECT_EQ(target.writes.back()[1], 0x06) << "the count goes in front of the data";
    EXPECT_TRUE(target.lastWriteHasGoodPec());
}

TEST_F(UsbAdapterTest, ReadsAreCheckedAgainstTheirPec)
{
    auto adapter = connected();
    target.queueWord(0x3D, 0x00FF);
    EXPECT_EQ(ask(adapter, "READWORD 0B 3D"), "0 00 FF");
    target.replies.push_back({ 0xFF, 0x00, 0x00 });
    EXPECT_EQ(ask(adapter, "READWORD 0B 3D"), "2");
    const std::uint8_t blockPec = smbusPec({ 0x16, 0x3F, 0x17, 0x02, 0xAA, 0xBB });
    target.replies.push_back({ 0x02, 0xAA, 0xBB, blockPec });
    EXPECT_EQ(ask(adapter, "READBLOCK 0B 3F"), "0 02 AA BB");
    target.replies.push_back({ 0x02, 0xAA, 0xBB, static_cast<std::uint8_t>(blockPec + 1) });
    EXPECT_EQ(ask(adapter, "READBLOCK 0B 3F"), "2");
    target.replies.push_back({ 0x05, 0xAA });
    EXPECT_EQ(ask(adapter, "READBLOCK 0B 3F"), "3") << "shorter than its length";
}

TEST_F(UsbAdapterTest, RefusalsAndBadRequests)
{
    auto adapter = connected();
    EXPECT_EQ(ask(adapter, "READWORD 0C 00"), "1") << "no pack at that address";
    target.acknowledge = false;
    EXPECT_EQ(ask(adapter, "WRITEWORD 0B 00 30 00"), "1");
    EXPECT_EQ(ask(adapter, "READBLOCK 0B 80"), "1");
    EXPECT_EQ(ask(adapter, "WRITEBLOCK 0B 3E 03 01 02"), "4") << "count and data disagree";
    EXPECT_EQ(ask(adapter, "WRITEWORD 0B 00 30"), "4");
    EXPECT_EQ(ask(adapter, "READWORD 0B XY"), "4");
    EXPECT_EQ(ask(adapter, "FLY"), "4");
    EXPECT_EQ(ask(adapter, ""), "4");
}

TEST_F(UsbAdapterTest, LinkFaultsBecomeStatusCodes)
{
    auto pec = connected({ .pecRate = 1.0 });
    target.queueWord(0x09, 0x1234);
    EXPECT_EQ(ask(pec, "READWORD 0B 09"), "2");
    EXPECT_EQ(ask(pec, "WRITEWORD 0B 09 34 12"), "0") << "writes have no PEC to spoil";
    for (LinkFaults faults :
        { LinkFaults { .lostRate = 1.0 }, LinkFaults { .cutRate = 1.0 }, LinkFaults { .stuckRate = 1.0 } }) {
        auto adapter = connected(faults);
        target.queueWord(0x09, 0x1234);
        EXPECT_EQ(ask(adapter, "READWORD 0B 09"), "3");
        EXPECT_EQ(ask(adapter, "WRITEWORD 0B 09 34 12"), "3");
    }
    UsbAdapter pulled(target, { { .pullAfterMs = 1000 }, 1, 500 });
    EXPECT_EQ(pulled.handle("CONNECT", 1499), "0");
    EXPECT_EQ(pulled.handle("CONNECT", 1500), "");
    EXPECT_TRUE(pulled.pulled());
}

// A client of the socket: sends one line, serves until the answer line is back.
class UsbSocketTest : public ::testing::Test {
protected:
    std::string roundTrip(int client, std::string_view line)
    {
        const std::string request = std::string(line) + "\n";
        EXPECT_EQ(::send(client, request.data(), request.size(), 0), static_cast<ssize_t>(request.size()));
        std::string answer;
        Servable* servables[] = { &server };
        for (int step = 0; step < 40 && answer.find('\n') == std::string::npos; ++step) {
            EXPECT_TRUE(serveOnce(
                servables, [] { return std::int64_t { 0 }; }, 50));
            char buffer[256];
            const ssize_t count = ::recv(client, buffer, sizeof buffer, MSG_DONTWAIT);
            if (count > 0)
                answer.append(buffer, static_cast<std::size_t>(count));
        }
        return answer;
    }

    FakeTarget target;
    UsbAdapter adapter { target };
    UsbSocketServer server { adapter };
};

// Listening on a path and its removal are covered by the session tests.
TEST_F(UsbSocketTest, SeveralRequestsInOneWriteAndAClientThatLeaves)
{
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    server.adopt(ends[0]);
    EXPECT_EQ(roundTrip(ends[1], "CONNECT\nVERSION"), "0\n0 ZV-USB-BRIDGE simulator 1.0\n");
    ::close(ends[1]);
    Servable* servables[] = { &server };
    for (int step = 0; step < 10 && server.clientCount() > 0; ++step)
        EXPECT_TRUE(serveOnce(
            servables, [] { return std::int64_t { 0 }; }, 50));
    EXPECT_EQ(server.clientCount(), 0u);
    EXPECT_EQ(adapter.handle("READWORD 0B 1A", 0), "5") << "a new client connects again";
}

} // namespace
} // namespace zvsim
