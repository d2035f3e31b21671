// The loader: the two loader states, a firmware download in block mode that ends in status 8 for
// a good image and 7 for a bad one, then a restart with the new versions.

#include "sim_device/host.h"

#include "device/firmware_image.h"

#include <gtest/gtest.h>

using simtest::Host;

namespace {

constexpr int BlockBytes = 128;

std::vector<std::uint8_t> padded(std::vector<std::uint8_t> section)
{
    section.resize((section.size() + BlockBytes - 1) / BlockBytes * BlockBytes, 0);
    return section;
}

// The host's side of a block-mode download: one request, then one block at a time, each followed
// by status reads until the pack is not busy. Returns the last status.
int download(Host& host, int file, const std::vector<std::uint8_t>& image)
{
    int blocks = static_cast<int>(image.size()) / BlockBytes;
    if (!host.request(1, file, 0, blocks))
        return -2;
    host.advance(1);
    int status = host.settle();
    if (status != 0)
        return status;
    for (int block = 0; block < blocks; ++block) {
        std::vector<std::uint8_t> data(
            image.begin() + block * BlockBytes, image.begin() + (block + 1) * BlockBytes);
        if (!host.writeBlock(0x3E, data))
            return -2;
        host.advance(1);
        status = host.settle();
        if (block + 1 < blocks && status != 0)
            return status;
    }
    return status;
}

class Loader : public ::testing::Test, public simtest::OpenPack {
protected:
    Loader()
        : OpenPack({ .targetId = 0x1003, .sealed = true, .state = zvsim::PackState::AppLoader })
    {
    }
};

TEST_F(Loader, ServesDirectoryAndStateButNoConfiguration)
{
    EXPECT_EQ(host.readFile(0, 0, 1).status, 0);
    EXPECT_EQ(host.readFile(5, 0, 22).status, 0);
    EXPECT_EQ(host.word(5, 13), 0) << "Application F File Version: no valid application";
    EXPECT_EQ(host.readFile(9, 0, 8).status, 4);
}

TEST_F(Loader, GoodImageEndsInEightAndRestartsIntoTheApplicationWithTheNewVersion)
{
    std::vector<std::uint8_t> payload(700, 0x42);
    auto image = padded(zvsim::makeFirmwareSection(6001, 720, payload));
    ASSERT_GT(image.size(), 5u * BlockBytes);
    EXPECT_EQ(download(host, 2, image), 8);
    EXPECT_EQ(host.readWord(0x00), 0x6699) << "still the loader until the restart";
    host.advance(4000);
    EXPECT_TRUE(pack.silent());
    host.advance(10'000);
    ASSERT_FALSE(pack.silent());
    EXPECT_EQ(host.readWord(0x00), 0x0000);
    host.open();
    EXPECT_EQ(host.word(5, 11), 6001) << "Firmware Version";
    EXPECT_EQ(host.word(5, 12), 720) << "FW Build";
}

TEST(ApplicationDownload, AcceptedAtItsLevel)
{
    zvsim::PackOptions o;
    o.targetId = 0x1001;
    o.level = 1;
    zvsim::Pack pack(o);
    Host host(pack);
    host.open();
    auto image = padded(zvsim::makeFirmwareSection(5001, 13, std::vector<std::uint8_t>(200, 7)));
    EXPECT_EQ(download(host, 2, image), 2) << "level 2 needed";
    pack.model().access.setLevel(2);
    EXPECT_EQ(download(host, 2, image), 8);
    EXPECT_EQ(download(host, 34, std::vector<std::uint8_t>(40 * BlockBytes, 0)), 6) << "larger than the file";
}

TEST(FirmwareSection, CheckFindsTheVersionsAndRefusesDamage)
{
    auto section = zvsim::makeFirmwareSection(5000, 12, std::vector<std::uint8_t> { 1, 2, 3 });
    auto good = zvsim::checkFirmwareSection(padded(section));
    ASSERT_TRUE(good);
    EXPECT_EQ(good->version, 5000);
    EXPECT_EQ(good->build, 12);
    section.pop_back();
    EXPECT_FALSE(zvsim::checkFirmwareSection(section)) << "cut short";
    EXPECT_FALSE(zvsim::checkFirmwareSection(std::vector<std::uint8_t>(128, 0))) << "no header";
}

} // namespace
