#include "usb/i2c_dev_adapter.h"

#include "link/pec.h"
#include "usb/i2c_bus_lookup.h"

#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <cerrno>

namespace zv {

namespace {

constexpr std::size_t kMaxBlock = 255;

// The kernel's failures in the adapter's statuses.
int statusOf(int result)
{
    switch (-result) {
    case 0:
        return kUsbOk;
    case ENXIO:
    case EREMOTEIO:
        return kUsbNoAck;
    case EBADMSG:
        return kUsbPecError;
    case EINVAL:
    case EOPNOTSUPP:
    case EMSGSIZE:
    case EPROTO:
    case EBUSY:
        return kUsbBadRequest;
    default:
        return kUsbTimeout;
    }
}

std::uint8_t writeAddress(std::uint8_t address)
{
    return static_cast<std::uint8_t>(address << 1);
}

} // namespace

I2cDevAdapter::I2cDevAdapter(std::unique_ptr<I2cDevice> device, std::string selector, std::string sysRoot)
    : device_(std::move(device))
    , selector_(std::move(selector))
    , sysRoot_(std::move(sysRoot))
{
}

I2cDevAdapter::~I2cDevAdapter()
{
    disconnect();
}

void I2cDevAdapter::disconnect()
{
    if (fd_ >= 0)
        device_->close(fd_);
    fd_ = -1;
    target_ = -1;
    functions_ = 0;
}

int I2cDevAdapter::Connect(bool connect)
{
    if (connect && fd_ >= 0)
        return kUsbOk;
    disconnect();
    if (!connect)
        return kUsbOk;
    if (selector_.starts_with("/")) {
        path_ = selector_;
        name_ = i2cBusName(path_, sysRoot_);
    } else {
        const auto bus = findI2cBus(selector_, sysRoot_);
        if (!bus)
            return kUsbAbsent;
        path_ = bus->device;
        name_ = bus->name;
    }
    const int fd = device_->open(path_);
    if (fd < 0)
        return kUsbAbsent;
    fd_ = fd;
    if (device_->ioctl(fd_, I2C_FUNCS, &functions_) != 0 || !has(I2C_FUNC_I2C | I2C_FUNC_SMBUS_WORD_DATA)) {
        disconnect();
        return kUsbAbsent;
    }
    if (has(I2C_FUNC_SMBUS_PEC) && device_->ioctlValue(fd_, I2C_PEC, 1) != 0)
        functions_ &= ~static_cast<unsigned long>(I2C_FUNC_SMBUS_PEC);
    return kUsbOk;
}

void I2cDevAdapter::Configure(int, int, int)
{
}

std::optional<std::string> I2cDevAdapter::GetVersion()
{
    if (fd_ < 0)
        return std::nullopt;
    return (name_.empty() ? std::string("i2c-dev") : name_) + " (" + path_ + ")";
}

bool I2cDevAdapter::smbusCarriesPec() const
{
    return has(I2C_FUNC_SMBUS_PEC) || !has(I2C_FUNC_I2C);
}

int I2cDevAdapter::selectTarget(std::uint8_t address)
{
    if (fd_ < 0)
        return kUsbNotConnected;
    if (target_ == address)
        return kUsbOk;
    const int status = statusOf(device_->ioctlValue(fd_, I2C_SLAVE, address));
    if (status == kUsbOk)
        target_ = address;
    return status;
}

int I2cDevAdapter::smbusTransfer(std::uint8_t address, std::uint8_t command, bool read, int size, void* data)
{
    if (const int status = selectTarget(address); status != kUsbOk)
        return status;
    i2c_smbus_ioctl_data request {};
    request.read_write = read ? I2C_SMBUS_READ : I2C_SMBUS_WRITE;
    request.command = command;
    request.size = static_cast<std::uint32_t>(size);
    request.data = static_cast<i2c_smbus_data*>(data);
    return statusOf(device_->ioctl(fd_, I2C_SMBUS, &request));
}

int I2cDevAdapter::rawWrite(std::uint8_t address, std::vector<std::uint8_t> bytes)
{
    if (fd_ < 0)
        return kUsbNotConnected;
    std::vector<std::uint8_t> covered { writeAddress(address) };
    covered.insert(covered.end(), bytes.begin(), bytes.end());
    bytes.push_back(pec(covered));
    i2c_msg message { address, 0, static_cast<std::uint16_t>(bytes.size()), bytes.data() };
    i2c_rdwr_ioctl_data transfer { &message, 1 };
    return statusOf(device_->ioctl(fd_, I2C_RDWR, &transfer));
}

int I2cDevAdapter::rawRead(
    std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& payload, bool block)
{
    if (fd_ < 0)
        return kUsbNotConnected;
    std::uint8_t commandByte = command;
    std::vector<std::uint8_t> answer(block ? kRawBlockRead : 3);
    i2c_msg messages[] = { { address, 0, 1, &commandByte },
        { address, I2C_M_RD, static_cast<std::uint16_t>(answer.size()), answer.data() } };
    i2c_rdwr_ioctl_data transfer { messages, 2 };
    if (const int status = statusOf(device_->ioctl(fd_, I2C_RDWR, &transfer)); status != kUsbOk)
        return status;
    // A word is two bytes; a block is its length byte and that many bytes. The PEC follows.
    const std::size_t length = block ? std::size_t { answer[0] } + 1 : 2;
    std::vector<std::uint8_t> covered { writeAddress(address), command,
        static_cast<std::uint8_t>(writeAddress(address) | 1) };
    covered.insert(covered.end(), answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(length));
    if (pec(covered) != answer[length])
        return kUsbPecError;
    payload.assign(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(length));
    return kUsbOk;
}

int I2cDevAdapter::WriteWord(std::uint8_t address, std::uint8_t command, std::uint8_t low, std::uint8_t high)
{
    if (smbusCarriesPec()) {
        i2c_smbus_data data {};
        data.word = static_cast<std::uint16_t>(low | high << 8);
        return smbusTransfer(address, command, false, I2C_SMBUS_WORD_DATA, &data);
    }
    return rawWrite(address, { command, low, high });
}

int I2cDevAdapter::ReadWord(std::uint8_t address, std::uint8_t command, std::uint8_t& high, std::uint8_t& low)
{
    if (smbusCarriesPec()) {
        i2c_smbus_data data {};
        const int status = smbusTransfer(address, command, true, I2C_SMBUS_WORD_DATA, &data);
        if (status == kUsbOk) {
            low = static_cast<std::uint8_t>(data.word & 0xFF);
            high = static_cast<std::uint8_t>(data.word >> 8);
        }
        return status;
    }
    std::vector<std::uint8_t> word;
    const int status = rawRead(address, command, word, false);
    if (status == kUsbOk) {
        low = word[0];
        high = word[1];
    }
    return status;
}

int I2cDevAdapter::WriteBlock(std::uint8_t address, std::uint8_t command, std::span<const std::uint8_t> data)
{
    const bool fitsSmbus = data.size() <= I2C_SMBUS_BLOCK_MAX && has(I2C_FUNC_SMBUS_WRITE_BLOCK_DATA);
    if (fitsSmbus && smbusCarriesPec()) {
        i2c_smbus_data block {};
        block.block[0] = static_cast<std::uint8_t>(data.size());
        std::copy(data.begin(), data.end(), block.block + 1);
        return smbusTransfer(address, command, false, I2C_SMBUS_BLOCK_DATA, &block);
    }
    if (!has(I2C_FUNC_I2C) || data.size() > kMaxBlock)
        return fd_ < 0 ? kUsbNotConnected : kUsbBadRequest;
    std::vector<std::uint8_t> bytes { command, static_cast<std::uint8_t>(data.size()) };
    bytes.insert(bytes.end(), data.begin(), data.end());
    return rawWrite(address, std::move(bytes));
}

int I2cDevAdapter::ReadBlock(std::uint8_t address, std::uint8_t command, std::vector<std::uint8_t>& data)
{
    // The length of a block is known only once it is read, so plain I2C reads the longest one.
    if (has(I2C_FUNC_I2C)) {
        std::vector<std::uint8_t> block;
        const int status = rawRead(address, command, block, true);
        if (status == kUsbOk)
            data.assign(block.begin() + 1, block.end());
        return status;
    }
    if (!has(I2C_FUNC_SMBUS_READ_BLOCK_DATA))
        return fd_ < 0 ? kUsbNotConnected : kUsbBadRequest;
    i2c_smbus_data block {};
    const int status = smbusTransfer(address, command, true, I2C_SMBUS_BLOCK_DATA, &block);
    if (status == kUsbOk)
        data.assign(block.block + 1, block.block + 1 + std::min<int>(block.block[0], I2C_SMBUS_BLOCK_MAX));
    return status;
}

} // namespace zv
