#pragma once
// The adapter's operations as request and answer lines (docs/SIMULATOR.md, "The USB adapter
// front end"): CONNECT, CONFIGURE, VERSION, WRITEWORD, READWORD, WRITEBLOCK, READBLOCK, bytes as
// two hex digits, the answer a decimal status and, on success, the data. A subclass carries the
// lines.

#include "usb/usb_adapter.h"

#include <string>
#include <string_view>

namespace zv {

class LineUsbAdapter : public UsbAdapter {
public:
    [[nodiscard]] std::optional<std::string> GetVersion() override;
    void Configure(int a, int b, int c) override;
    // Opens the line (status 6 when it cannot be opened) and announces the host.
    [[nodiscard]] int Connect(bool connect) override;
    [[nodiscard]] int WriteWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high) override;
    [[nodiscard]] int WriteBlock(
        std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data) override;
    [[nodiscard]] int ReadWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low) override;
    [[nodiscard]] int ReadBlock(
        std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data) override;

protected:
    [[nodiscard]] virtual bool openLine() = 0;
    virtual void closeLine() = 0;
    [[nodiscard]] virtual bool lineOpen() const = 0;
    // One request line out, its answer line back; nothing when no answer came (the line closes).
    [[nodiscard]] virtual std::optional<std::string> exchange(const std::string& request) = 0;

private:
    struct Answer {
        int status = kUsbTimeout;
        std::string text; // what follows the status
        std::vector<std::uint8_t> bytes; // that text as bytes; empty when it is not hex
    };
    [[nodiscard]] Answer ask(const std::string& request);

    bool connected_ = false; // CONNECT was answered; a closed line is opened again
};

// One answer line: the decimal status (4 when the line does not start with one), then the text
// after it and that text as hex bytes.
struct UsbAnswerLine {
    int status = kUsbBadRequest;
    std::string text;
    std::vector<std::uint8_t> bytes;
};
[[nodiscard]] UsbAnswerLine parseUsbAnswer(std::string_view line);

} // namespace zv
