#include "platform/port_devices.h"
#include "platform/serial_settings.h"
#include "platform/testing/memory_settings_store.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

using namespace zv::platform;

TEST(PortDevices, NumbersMapToUsbAndAcmDevices)
{
    MemorySettingsStore store;
    EXPECT_EQ(devicePathForPort(1, store), "/dev/ttyUSB0");
    EXPECT_EQ(devicePathForPort(8, store), "/dev/ttyUSB7");
    EXPECT_EQ(devicePathForPort(9, store), "/dev/ttyACM0");
    EXPECT_EQ(devicePathForPort(16, store), "/dev/ttyACM7");
    EXPECT_EQ(devicePathForPort(0, store), "");
    EXPECT_EQ(devicePathForPort(-3, store), "");
    EXPECT_EQ(devicePathForPort(17, store), "");
}

TEST(PortDevices, AStoredDeviceOverridesTheNumber)
{
    MemorySettingsStore store;
    store.setValue("Ports", "COM3", "/dev/serial/by-id/usb-FTDI_A1-if00-port0");
    store.setValue("Ports", "COM17", "/tmp/packsim-link");
    store.setValue("Settings", "COM4", "/dev/null"); // another key path does not count
    EXPECT_EQ(devicePathForPort(3, store), "/dev/serial/by-id/usb-FTDI_A1-if00-port0");
    EXPECT_EQ(devicePathForPort(17, store), "/tmp/packsim-link");
    EXPECT_EQ(devicePathForPort(4, store), "/dev/ttyUSB3");
    EXPECT_EQ(devicePathForPort(2, store), "/dev/ttyUSB1");
}

TEST(PortDevices, OnlyPresentCharacterDevicesExist)
{
    const auto dir = std::filesystem::temp_directory_path() / ("zv-ports-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const auto plainFile = dir / "not-a-port";
    std::ofstream(plainFile) << "x";
    const auto link = dir / "link-to-null";
    std::filesystem::create_symlink("/dev/null", link);
    const auto dangling = dir / "dangling";
    std::filesystem::create_symlink(dir / "gone", dangling);

    MemorySettingsStore store;
    store.setValue("Ports", "COM1", link.string());
    store.setValue("Ports", "COM2", plainFile.string());
    store.setValue("Ports", "COM5", dangling.string());
    store.setValue("Ports", "COM20", "/dev/null");
    EXPECT_TRUE(portExists(1, store));
    EXPECT_FALSE(portExists(2, store));
    EXPECT_FALSE(portExists(5, store));
    EXPECT_TRUE(portExists(20, store));
    EXPECT_FALSE(portExists(0, store));
    EXPECT_FALSE(deviceExists(""));
    EXPECT_FALSE(deviceExists(dir.string()));

    std::filesystem::remove_all(dir);
}

TEST(SerialSettingsText, ReadsEveryField)
{
    const auto line = parseSerialSettings("115200,n,8,1");
    ASSERT_TRUE(line);
    EXPECT_EQ(line->baud, 115200);
    EXPECT_EQ(line->parity, Parity::None);
    EXPECT_EQ(line->dataBits, 8);
    EXPECT_EQ(line->stopBits, StopBits::One);

    const auto other = parseSerialSettings(" 19200 , E , 7 , 2 ");
    ASSERT_TRUE(other);
    EXPECT_EQ(other->baud, 19200);
    EXPECT_EQ(other->parity, Parity::Even);
    EXPECT_EQ(other->dataBits, 7);
    EXPECT_EQ(other->stopBits, StopBits::Two);

    EXPECT_EQ(parseSerialSettings("9600,o,5,1.5")->parity, Parity::Odd);
    EXPECT_EQ(parseSerialSettings("9600,o,5,1.5")->stopBits, StopBits::OneAndHalf);
    EXPECT_EQ(parseSerialSettings("9600,m,8,1")->parity, Parity::Mark);
    EXPECT_EQ(parseSerialSettings("9600,S,8,1")->parity, Parity::Space);
}

TEST(SerialSettingsText, RefusesIncompleteOrOutOfRangeTexts)
{
    for (const char* text :
        { "", ",n,8,1", "abc,n,8,1", "0,n,8,1", "-9600,n,8,1", "9600,x,8,1", "9600,no,8,1", "9600,n,9,1",
            "9600,n,4,1", "9600,n,8,3", "9600,n,8", "9600,n,8,1,1", "9600n,8,1", "96 00,n,8,1" }) {
        EXPECT_FALSE(parseSerialSettings(text)) << '"' << text << '"';
    }
}
