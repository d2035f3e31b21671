// The i2c-dev backend on a double of the kernel's calls: which transfer each operation becomes,
// the PEC we add and check on plain I2C, what an adapter cannot carry, errors, and finding the
// bus by its sysfs name; and the choice of backend from the UsbAdapter setting.

#include <unistd.h>

#include "core/temp_folder.h"
#include "link/pec.h"
#include "usb/i2c_bus_lookup.h"
#include "usb/i2c_dev_adapter.h"
#include "usb/usb_adapter_factory.h"

#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <cerrno>
#include <filesystem>

#include <gtest/gtest.h>

using namespace zv;

namespace {

// One ioctl as the kernel got it.
struct Call {
    unsigned long request = 0;
    unsigned long value = 0; // I2C_SLAVE, I2C_PEC
    int readWrite = 0; // I2C_SMBUS
    int command = 0;
    int size = 0;
    std::vector<std::uint8_t> bytes; // I2C_SMBUS: the data; I2C_RDWR: the written message
    std::vector<std::uint16_t> flags; // I2C_RDWR: the flags of each message
    std::vector<std::uint16_t> lengths;
};

class FakeI2c : public I2cDevice {
public:
    int open(const std::string& path) override
    {
        opened.push_back(path);
        return openable ? 7 : -ENOENT;
    }
    int ioctlValue(int, unsigned long request, unsigned long value) override
    {
        calls.push_back({ request, value });
        return 0;
    }
    int ioctl(int, unsigned long request, void* arg) override
    {
        if (request == I2C_FUNCS) {
            *static_cast<unsigned long*>(arg) = functions;
            return 0;
        }
        Call call { request };
        if (request == I2C_SMBUS)
            smbus(call, *static_cast<i2c_smbus_ioctl_data*>(arg));
        else
            rdwr(call, *static_cast<i2c_rdwr_ioctl_data*>(arg));
        calls.push_back(call);
        return std::exchange(failWith, 0);
    }
    void close(int) override { ++closed; }

    unsigned long functions = 0;
    bool openable = true;
    int failWith = 0; // -errno for the next transfer
    std::vector<std::uint8_t> reply; // what the next read gets
    std::vector<std::string> opened;
    std::vector<Call> calls;
    int closed = 0;

private:
    void smbus(Call& call, i2c_smbus_ioctl_data& data)
    {
        call.readWrite = data.read_write;
        call.command = data.command;
        call.size = static_cast<int>(data.size);
        if (data.read_write == I2C_SMBUS_READ) {
            std::copy(reply.begin(), reply.end(), data.data->block);
            return;
        }
        const std::size_t length = data.size == I2C_SMBUS_WORD_DATA ? 2 : data.data->block[0] + 1u;
        call.bytes.assign(data.data->block, data.data->block + length);
    }
    void rdwr(Call& call, i2c_rdwr_ioctl_data& data)
    {
        for (std::uint32_t i = 0; i < data.nmsgs; ++i) {
            auto& message = data.msgs[i];
            call.flags.push_back(message.flags);
            call.lengths.push_back(message.len);
            if (message.flags & I2C_M_RD) {
                std::fill(message.buf, message.buf + message.len, 0xFF);
                std::copy(reply.begin(), reply.begin() + std::min<std::size_t>(reply.size(), message.len),
                    message.buf);
            } else {
                call.bytes.insert(call.bytes.end(), message.buf, message.buf + message.len);
            }
        }
    }
};

constexpr unsigned long kSmbusOnly = I2C_FUNC_SMBUS_WORD_DATA | I2C_FUNC_SMBUS_BLOCK_DATA;

class I2cDevAdapterTest : public ::testing::Test {
protected:
    I2cDevAdapter& connected(unsigned long functions)
    {
        auto device = std::make_unique<FakeI2c>();
        fake = device.get();
        fake->functions = functions;
        adapter = std::make_unique<I2cDevAdapter>(std::move(device), "/dev/i2c-4", sys.path().string());
        EXPECT_EQ(adapter->Connect(true), kUsbOk);
        connectCalls = std::exchange(fake->calls, {});
        return *adapter;
    }
    // A read reply of plain I2C: the bytes and the PEC over both addresses, the command and them.
    static std::vector<std::uint8_t> withPec(std::uint8_t command, std::vector<std::uint8_t> bytes)
    {
        std::vector<std::uint8_t> covered { 0x16, command, 0x17 };
        covered.insert(covered.end(), bytes.begin(), bytes.end());
        bytes.push_back(pec(covered));
        return bytes;
    }

    zv::testing::TempFolder sys;
    FakeI2c* fake = nullptr;
    std::vector<Call> connectCalls;
    std::unique_ptr<I2cDevAdapter> adapter;
};

TEST_F(I2cDevAdapterTest, AnAdapterWithPecUsesTheKernelsSmbusTransfers)
{
    auto& pecAdapter = connected(I2C_FUNC_I2C | I2C_FUNC_SMBUS_PEC | kSmbusOnly);
    auto* raw = fake;
    ASSERT_EQ(connectCalls.size(), 1u);
    EXPECT_EQ(connectCalls[0].request, static_cast<unsigned long>(I2C_PEC));
    EXPECT_EQ(connectCalls[0].value, 1u);

    EXPECT_EQ(pecAdapter.WriteWord(0x0B, 0x09, 0x34, 0x12), kUsbOk);
    ASSERT_EQ(raw->calls.size(), 2u);
    EXPECT_EQ(raw->calls[0].request, static_cast<unsigned long>(I2C_SLAVE));
    EXPECT_EQ(raw->calls[0].value, 0x0Bu);
    EXPECT_EQ(raw->calls[1].size, I2C_SMBUS_WORD_DATA);
    EXPECT_EQ(raw->calls[1].command, 0x09);
    EXPECT_EQ(raw->calls[1].bytes, (std::vector<std::uint8_t> { 0x34, 0x12 }));

    raw->reply = { 0x01, 0x10 };
    std::uint8_t high = 0;
    std::uint8_t low = 0;
    EXPECT_EQ(pecAdapter.ReadWord(0x0B, 0x00, high, low), kUsbOk);
    EXPECT_EQ(high, 0x10);
    EXPECT_EQ(low, 0x01);
    EXPECT_EQ(raw->calls.size(), 3u) << "the address is selected once";

    const std::vector<std::uint8_t> request { 0, 0, 0, 0, 1, 0 };
    EXPECT_EQ(pecAdapter.WriteBlock(0x0B, 0x3C, request), kUsbOk);
    EXPECT_EQ(raw->calls.back().size, I2C_SMBUS_BLOCK_DATA);
    EXPECT_EQ(raw->calls.back().bytes, (std::vector<std::uint8_t> { 6, 0, 0, 0, 0, 1, 0 }));

    const std::vector<std::uint8_t> longBlock(40, 0x5A);
    EXPECT_EQ(pecAdapter.WriteBlock(0x0B, 0x3E, longBlock), kUsbOk);
    const auto& raw40 = raw->calls.back();
    EXPECT_EQ(raw40.request, static_cast<unsigned long>(I2C_RDWR)) << "longer than 32 bytes: plain I2C";
    ASSERT_EQ(raw40.bytes.size(), 43u);
    std::vector<std::uint8_t> covered { 0x16 };
    covered.insert(covered.end(), raw40.bytes.begin(), raw40.bytes.end() - 1);
    EXPECT_EQ(raw40.bytes.back(), pec(covered));
    EXPECT_EQ(raw40.bytes[1], 40);
}

TEST_F(I2cDevAdapterTest, WithoutPecOnTheAdapterWeFrameAndCheckIt)
{
    auto& bridge = connected(I2C_FUNC_I2C | kSmbusOnly);
    EXPECT_EQ(bridge.WriteWord(0x0B, 0x00, 0x30, 0x00), kUsbOk);
    EXPECT_EQ(fake->calls.back().bytes, (std::vector<std::uint8_t> { 0x00, 0x30, 0x00, 0xEA }));

    fake->reply = withPec(0x00, { 0x01, 0x10 });
    std::uint8_t high = 0;
    std::uint8_t low = 0;
    EXPECT_EQ(bridge.ReadWord(0x0B, 0x00, high, low), kUsbOk);
    EXPECT_EQ(high * 256 + low, 0x1001);
    EXPECT_EQ(fake->calls.back().bytes, (std::vector<std::uint8_t> { 0x00 })) << "the command, then a read";
    EXPECT_EQ(fake->calls.back().flags, (std::vector<std::uint16_t> { 0, I2C_M_RD }));

    fake->reply[2] ^= 0xFF;
    high = low = 0x77;
    EXPECT_EQ(bridge.ReadWord(0x0B, 0x00, high, low), kUsbPecError);
    EXPECT_EQ(high, 0x77) << "a failed read leaves the bytes";

    fake->reply = withPec(0x3F, { 3, 0xAA, 0xBB, 0xCC });
    std::vector<std::uint8_t> data;
    EXPECT_EQ(bridge.ReadBlock(0x0B, 0x3F, data), kUsbOk);
    EXPECT_EQ(data, (std::vector<std::uint8_t> { 0xAA, 0xBB, 0xCC }));
    EXPECT_EQ(fake->calls.back().lengths[1], I2cDevAdapter::kRawBlockRead);

    std::vector<std::uint8_t> big(200);
    for (std::size_t i = 0; i < big.size(); ++i)
        big[i] = static_cast<std::uint8_t>(i);
    big.insert(big.begin(), 200);
    fake->reply = withPec(0x3F, big);
    EXPECT_EQ(bridge.ReadBlock(0x0B, 0x3F, data), kUsbOk);
    EXPECT_EQ(data.size(), 200u);
    EXPECT_EQ(data.back(), 199);
}

TEST_F(I2cDevAdapterTest, AnSmbusOnlyAdapterRefusesWhatItCannotCarry)
{
    auto& smbus = connected(kSmbusOnly);
    EXPECT_EQ(smbus.WriteBlock(0x0B, 0x3E, std::vector<std::uint8_t>(33, 1)), kUsbBadRequest);
    EXPECT_TRUE(fake->calls.empty()) << "nothing reaches the bus";
    EXPECT_EQ(smbus.WriteBlock(0x0B, 0x3E, std::vector<std::uint8_t>(32, 1)), kUsbOk);
    fake->reply = { 2, 0x11, 0x22 };
    std::vector<std::uint8_t> data;
    EXPECT_EQ(smbus.ReadBlock(0x0B, 0x3F, data), kUsbOk);
    EXPECT_EQ(data, (std::vector<std::uint8_t> { 0x11, 0x22 }));
    EXPECT_EQ(fake->calls.back().size, I2C_SMBUS_BLOCK_DATA);
}

TEST_F(I2cDevAdapterTest, KernelErrorsBecomeAdapterStatuses)
{
    auto& bridge = connected(I2C_FUNC_I2C | kSmbusOnly);
    const std::pair<int, int> cases[] = { { ENXIO, kUsbNoAck }, { EREMOTEIO, kUsbNoAck },
        { EBADMSG, kUsbPecError }, { ETIMEDOUT, kUsbTimeout }, { EOPNOTSUPP, kUsbBadRequest } };
    for (const auto& [error, status] : cases) {
        fake->failWith = -error;
        EXPECT_EQ(bridge.WriteWord(0x0B, 0x00, 0, 0), status) << error;
    }
    EXPECT_EQ(bridge.Connect(false), kUsbOk);
    EXPECT_EQ(fake->closed, 1);
    EXPECT_EQ(bridge.WriteWord(0x0B, 0x00, 0, 0), kUsbNotConnected);
}

TEST_F(I2cDevAdapterTest, TheBusIsFoundByItsAdaptersName)
{
    const std::string root = sys.path().string();
    std::filesystem::create_directories(sys.path() / "class/i2c-dev/i2c-1");
    std::filesystem::create_directories(sys.path() / "class/i2c-dev/i2c-7");
    std::filesystem::create_directories(sys.path() / "bus/i2c/devices/i2c-12");
    sys.write("class/i2c-dev/i2c-1/name", "i915 gmbus dpb\n");
    sys.write("class/i2c-dev/i2c-7/name", "CP2112 SMBus Bridge on hidraw2\n");
    sys.write("bus/i2c/devices/i2c-12/name", "MCP2221 usb-i2c bridge\n");

    EXPECT_EQ(findI2cBus("cp2112", root)->device, "/dev/i2c-7");
    EXPECT_EQ(findI2cBus("MCP2221", root)->device, "/dev/i2c-12");
    EXPECT_FALSE(findI2cBus("FT260", root));
    EXPECT_EQ(i2cBusName("/dev/i2c-7", root), "CP2112 SMBus Bridge on hidraw2");

    auto device = std::make_unique<FakeI2c>();
    device->functions = I2C_FUNC_I2C | kSmbusOnly;
    auto* raw = device.get();
    I2cDevAdapter byName(std::move(device), "CP2112", root);
    EXPECT_FALSE(byName.GetVersion()) << "no version before the bus is open";
    ASSERT_EQ(byName.Connect(true), kUsbOk);
    EXPECT_EQ(raw->opened, std::vector<std::string> { "/dev/i2c-7" });
    EXPECT_EQ(byName.GetVersion(), "CP2112 SMBus Bridge on hidraw2 (/dev/i2c-7)");

    EXPECT_EQ(byName.Connect(true), kUsbOk);
    EXPECT_EQ(raw->opened.size(), 1u) << "connecting again keeps the open bus";
    EXPECT_EQ(byName.Connect(false), kUsbOk);
    raw->openable = false;
    EXPECT_EQ(byName.Connect(true), kUsbAbsent) << "the bus cannot be opened";
    I2cDevAdapter missing(std::make_unique<FakeI2c>(), "FT260", root);
    EXPECT_EQ(missing.Connect(true), kUsbAbsent);
    I2cDevAdapter noFunctions(std::make_unique<FakeI2c>(), "/dev/i2c-7", root);
    EXPECT_EQ(noFunctions.Connect(true), kUsbAbsent) << "a bus that carries no SMBus words";

    using Backend = UsbAdapterChoice::Backend;
    const auto socket = chooseUsbAdapter(" socket:/run/user/1000/zentavia-usb.sock", root);
    EXPECT_EQ(socket.backend, Backend::Socket);
    EXPECT_EQ(socket.target, "/run/user/1000/zentavia-usb.sock");
    EXPECT_EQ(chooseUsbAdapter("i2c:CP2112", root).target, "CP2112");
    EXPECT_EQ(chooseUsbAdapter("/dev/i2c-3", root).target, "/dev/i2c-3");
    EXPECT_EQ(chooseUsbAdapter("", root).target, "/dev/i2c-7") << "the first known bridge";
    EXPECT_EQ(chooseUsbAdapter("", (sys.path() / "none").string()).target, "CP2112");
    const auto ini = sys.write("Zentavia.ini", "[Setup]\nCommunications=1\nUsbAdapter=i2c:MCP2221\n");
    EXPECT_EQ(readUsbAdapterSetting(ini), "i2c:MCP2221");
}

} // namespace
