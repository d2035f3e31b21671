// The socket client against the simulator's adapter socket, served from a thread of the test
// process, and the parsing of answer lines.

#include "device/pack.h"
#include "frontends/serve_loop.h"
#include "frontends/usb_socket_server.h"
#include "usb/socket_usb_adapter.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <thread>

#include <gtest/gtest.h>

using namespace zv;

namespace {

std::string socketPath(const std::string& name)
{
    return "/tmp/zv-usb-" + name + "-" + std::to_string(::getpid()) + ".sock";
}

// The pack behind the simulator's socket; requests are answered as soon as they arrive.
class ServedPack {
public:
    explicit ServedPack(std::string path)
        : path_(std::move(path))
    {
        EXPECT_EQ(server_.listen(path_), "");
        thread_ = std::thread([this] {
            zvsim::Servable* servables[] = { &server_ };
            while (!stop_)
                (void)zvsim::serveOnce(
                    servables, [] { return std::int64_t { 0 }; }, 20);
        });
    }
    ~ServedPack()
    {
        stop_ = true;
        thread_.join();
    }
    [[nodiscard]] const std::string& path() const { return path_; }

private:
    std::string path_;
    std::unique_ptr<zvsim::Pack> pack_ = zvsim::makePack({});
    zvsim::UsbAdapter adapter_ { *pack_ };
    zvsim::UsbSocketServer server_ { adapter_ };
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

TEST(SocketUsbAdapterTest, TalksToThePackThroughTheSimulatorsSocket)
{
    ServedPack served(socketPath("served"));
    SocketUsbAdapter adapter(served.path());
    EXPECT_EQ(adapter.WriteWord(0x0B, 0x00, 0x1B, 0xC0), kUsbNotConnected) << "Connect first";
    ASSERT_EQ(adapter.Connect(true), kUsbOk);
    adapter.Configure(1, 1, 1);
    EXPECT_EQ(adapter.GetVersion(), "ZV-USB-BRIDGE simulator 1.0");
    EXPECT_EQ(adapter.WriteWord(0x0B, 0x00, 0x1B, 0xC0), kUsbOk);
    std::uint8_t high = 0;
    std::uint8_t low = 0;
    EXPECT_EQ(adapter.ReadWord(0x0B, 0x00, high, low), kUsbOk);
    EXPECT_EQ(high * 256 + low, 0x1001);
    EXPECT_EQ(adapter.ReadWord(0x0C, 0x00, high, low), kUsbNoAck) << "nothing at 0x0C";

    EXPECT_EQ(adapter.WriteWord(0x0B, 0x00, 0x21, 0x6E), kUsbOk);
    EXPECT_EQ(adapter.WriteWord(0x0B, 0x00, 0x3C, 0x7A), kUsbOk);
    const std::vector<std::uint8_t> directorySize { 0, 0, 0, 0, 1, 0 };
    EXPECT_EQ(adapter.WriteBlock(0x0B, 0x3C, directorySize), kUsbOk);
    std::vector<std::uint8_t> data;
    EXPECT_EQ(adapter.ReadBlock(0x0B, 0x80, data), kUsbOk);
    EXPECT_FALSE(data.empty());
    EXPECT_EQ(adapter.WriteBlock(0x0B, 0x3E, std::vector<std::uint8_t>(256)), kUsbBadRequest);
}

TEST(SocketUsbAdapterTest, NothingListeningMeansNoAdapter)
{
    SocketUsbAdapter adapter(socketPath("absent"));
    EXPECT_EQ(adapter.Connect(true), kUsbAbsent);
    EXPECT_FALSE(adapter.GetVersion());

    // A socket that accepts the connection but never answers.
    const auto path = socketPath("silent");
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path.c_str());
    ::unlink(path.c_str());
    ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 1), 0);
    SocketUsbAdapter silent(path, 0);
    EXPECT_EQ(silent.Connect(true), kUsbAbsent);
    ::close(listener);
    ::unlink(path.c_str());
}

TEST(SocketUsbAdapterTest, AnswerLines)
{
    const auto word = parseUsbAnswer("0 10 01\r");
    EXPECT_EQ(word.status, 0);
    EXPECT_EQ(word.bytes, (std::vector<std::uint8_t> { 0x10, 0x01 }));
    const auto version = parseUsbAnswer("0 ZV-USB-BRIDGE simulator 1.0");
    EXPECT_EQ(version.text, "ZV-USB-BRIDGE simulator 1.0");
    EXPECT_TRUE(version.bytes.empty());
    EXPECT_EQ(parseUsbAnswer("2").status, 2);
    EXPECT_EQ(parseUsbAnswer("").status, kUsbBadRequest);
    EXPECT_EQ(parseUsbAnswer("OK").status, kUsbBadRequest);
    EXPECT_TRUE(parseUsbAnswer("0 1 02").bytes.empty()) << "bytes are two digits each";
}

} // namespace
