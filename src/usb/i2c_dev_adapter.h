#pragma once
// The USB adapter on Linux: a USB-to-SMBus bridge (CP2112, MCP2221, ...) as an i2c-dev bus.
// Words and blocks of up to 32 bytes go through the kernel's SMBus transfer when the adapter
// carries the PEC itself; otherwise, and for longer blocks, the transfer is built as plain I2C
// messages (I2C_RDWR) with the PEC computed and checked here. An adapter that offers neither
// refuses what it cannot carry with status 4 before anything reaches the bus.

#include "usb/i2c_device.h"
#include "usb/usb_adapter.h"

#include <memory>

namespace zv {

class I2cDevAdapter : public UsbAdapter {
public:
    // selector: a device path ("/dev/i2c-3") or a part of the adapter's sysfs name ("CP2112").
    I2cDevAdapter(std::unique_ptr<I2cDevice> device, std::string selector, std::string sysRoot = "/sys");
    ~I2cDevAdapter() override;
    I2cDevAdapter(const I2cDevAdapter&) = delete;
    I2cDevAdapter& operator=(const I2cDevAdapter&) = delete;

    // The adapter's sysfs name and its device, once connected.
    [[nodiscard]] std::optional<std::string> GetVersion() override;
    // The bus speed is the adapter driver's; nothing to set here.
    void Configure(int a, int b, int c) override;
    // Finds and opens the bus and reads its functionality: status 6 when there is none.
    [[nodiscard]] int Connect(bool connect) override;
    [[nodiscard]] int WriteWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high) override;
    [[nodiscard]] int WriteBlock(
        std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data) override;
    [[nodiscard]] int ReadWord(
        std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low) override;
    [[nodiscard]] int ReadBlock(
        std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data) override;

    // A plain-I2C block read asks for this many bytes: the longest block, its length and PEC.
    static constexpr std::size_t kRawBlockRead = 1 + 255 + 1;

private:
    [[nodiscard]] bool has(unsigned long functionality) const { return (functions_ & functionality) != 0; }
    // Words and short blocks go through the kernel's SMBus transfer unless only plain I2C carries a PEC.
    [[nodiscard]] bool smbusCarriesPec() const;
    [[nodiscard]] int selectTarget(std::uint8_t address);
    [[nodiscard]] int smbusTransfer(
        std::uint8_t address, std::uint8_t command, bool read, int size, void* data);
    [[nodiscard]] int rawWrite(std::uint8_t address, std::vector<std::uint8_t> bytes);
    [[nodiscard]] int rawRead(
        std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& payload, bool block);
    void disconnect();

    std::unique_ptr<I2cDevice> device_;
    std::string selector_;
    std::string sysRoot_;
    std::string path_;
    std::string name_;
    int fd_ = -1;
    unsigned long functions_ = 0;
    int target_ = -1; // the address I2C_SLAVE holds
};

} // namespace zv
