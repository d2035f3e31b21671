#pragma once
// The USB adapter as served on a Unix stream socket by zentavia-packsim: one request line, one
// answer line (docs/SIMULATOR.md). Reads wait in poll() with a time-out.

#include "usb/usb_adapter.h"

#include <string>
#include <string_view>

namespace zv {

class SocketUsbAdapter : public UsbAdapter {
public:
    static constexpr int kDefaultTimeoutMs = 2000;

    explicit SocketUsbAdapter(std::string path, int timeoutMs = kDefaultTimeoutMs);
    ~SocketUsbAdapter() override;
    SocketUsbAdapter(const SocketUsbAdapter&) = delete;
    SocketUsbAdapter& operator=(const SocketUsbAdapter&) = delete;

    [[nodiscard]] std::optional<std::string> GetVersion() override;
    void Configure(int a, int b, int c) override;
    // Connects the socket (status 6 when nothing listens at the path) and announces the host.
    [[nodiscard]] int Connect(bool connect) override;
    [[nodiscard]] int WriteWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high) override;
    [[nodiscard]] int WriteBlock(
        std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data) override;
    [[nodiscard]] int ReadWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low) override;
    [[nodiscard]] int ReadBlock(
        std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data) override;

private:
    struct Answer {
        int status = kUsbTimeout;
        std::vector<std::uint8_t> bytes;
        std::string text; // what follows the status
    };
    // Sends one request line and waits for its answer; status 3 when none comes, 5 unconnected.
    [[nodiscard]] Answer ask(const std::string& request);
    [[nodiscard]] std::optional<std::string> readLine();
    void disconnect();

    std::string path_;
    int timeoutMs_;
    int fd_ = -1;
    std::string received_;
};

// One answer line: the decimal status, then the text after it and that text as hex bytes.
struct UsbAnswerLine {
    int status = kUsbBadRequest;
    std::string text;
    std::vector<std::uint8_t> bytes; // empty when the text is not all two-digit hex words
};
[[nodiscard]] UsbAnswerLine parseUsbAnswer(std::string_view line);

} // namespace zv
