// A zentavia-packsim session in front of the real pack: device faults from the list reach it,
// and a pull ends it.

#include "device/pack.h"
#include "packsim/packsim_session.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>

namespace zvsim {
namespace {

class SessionTest : public ::testing::Test {
protected:
    void TearDown() override
    {
        if (client >= 0)
            ::close(client);
    }

    PackSimOptions usbOnly(std::string_view faults)
    {
        PackSimOptions options;
        options.usbSocket = socketPath.string();
        options.faults = parseFaultList(faults).plan;
        return options;
    }

    // The session runs on the test's clock; the socket traffic is real.
    std::function<std::int64_t()> virtualClock()
    {
        return [this] { return clockMs * 1000; };
    }

    void connect()
    {
        client = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        std::strcpy(address.sun_path, socketPath.c_str());
        ASSERT_EQ(::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }

    std::string ask(PackSimSession& session, std::string_view line)
    {
        const std::string request = std::string(line) + "\n";
        EXPECT_EQ(::send(client, request.data(), request.size(), 0), static_cast<ssize_t>(request.size()));
        std::string answer;
        for (int step = 0; step < 40 && answer.find('\n') == std::string::npos; ++step) {
            EXPECT_TRUE(session.serveOnce(50));
            char buffer[512];
            const ssize_t count = ::recv(client, buffer, sizeof buffer, MSG_DONTWAIT);
            if (count > 0)
                answer.append(buffer, static_cast<std::size_t>(count));
        }
        return answer.substr(0, answer.find('\n'));
    }

    std::filesystem::path socketPath
        = std::filesystem::temp_directory_path() / ("zvsim-session-" + std::to_string(::getpid()));
    int client = -1;
    std::int64_t clockMs = 0;
};

TEST_F(SessionTest, DeviceFaultsFromTheListReachThePack)
{
    PackSimSession session(usbOnly("busy:5"), virtualClock());
    ASSERT_EQ(session.start(), "");
    EXPECT_EQ(session.whereItAnswers(), "  USB adapter on " + socketPath.string() + "\n");
    EXPECT_EQ(session.pack().faults().busyPolls, 5);
    connect();
    EXPECT_EQ(ask(session, "CONNECT"), "0");
    EXPECT_EQ(ask(session, "WRITEWORD 0B 00 21 6E"), "0");
    EXPECT_EQ(ask(session, "WRITEWORD 0B 00 3C 7A"), "0");
    EXPECT_EQ(ask(session, "WRITEWORD 0B 00 1B C0"), "0");
    EXPECT_EQ(ask(session, "READWORD 0B 00"), "0 10 01");
    EXPECT_EQ(ask(session, "WRITEBLOCK 0B 3C 06 00 00 00 00 01 00"), "0");
    int busyReads = 0;
    std::string status;
    // The host's pace: a status read every 5 ms until the pack is done.
    for (int read = 0; read < 200 && (status = ask(session, "READWORD 0B 3D")).starts_with("0 00 FF");
         ++read) {
        ++busyReads;
        clockMs += 5;
    }
    EXPECT_GE(busyReads, 5);
    EXPECT_EQ(status.substr(0, 7), "0 00 00") << status;
}

TEST_F(SessionTest, PullEndsTheSession)
{
    PackSimSession session(usbOnly("pull:0"), virtualClock());
    ASSERT_EQ(session.start(), "");
    EXPECT_FALSE(session.pulled());
    EXPECT_TRUE(session.serveOnce(0));
    EXPECT_TRUE(session.pulled());
    EXPECT_FALSE(std::filesystem::exists(socketPath));
}

} // namespace
} // namespace zvsim
