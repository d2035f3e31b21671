// The seal: levels at power-on, the login through file 3 with the passwords of file 16, and what
// the levels open.

#include "sim_device/host.h"

#include <gtest/gtest.h>

using simtest::Host;

namespace {

std::vector<std::uint8_t> password(const std::string& text)
{
    std::vector<std::uint8_t> bytes(8, 0);
    std::copy(text.begin(), text.end(), bytes.begin());
    return bytes;
}

zvsim::PackOptions sealed(const std::string& secret = "")
{
    zvsim::PackOptions o;
    o.sealed = true;
    o.password = secret;
    return o;
}

int level(Host& host)
{
    return host.word(5, 0);
}

TEST(Seal, SealedPackOpensWithTheLevelPasswordOfFile16)
{
    zvsim::Pack pack(sealed("S3cret"));
    Host host(pack);
    host.open();
    EXPECT_EQ(level(host), 0);
    EXPECT_EQ(host.readFile(10, 0, 11).status, 1);
    EXPECT_EQ(host.writeFile(3, 0, 1, password("wrong")), 0) << "the write itself succeeds";
    EXPECT_EQ(level(host), 0) << "a wrong password changes nothing";
    EXPECT_EQ(host.writeFile(3, 0, 1, password("S3cret")), 0);
    EXPECT_EQ(level(host), 2);
    EXPECT_EQ(host.readFile(10, 0, 11).status, 0);
    EXPECT_EQ(host.writeFile(3, 0, 1, password("user")), 0);
    EXPECT_EQ(level(host), 1);
    ASSERT_TRUE(host.writeWord(0x00, 0xC01A));
    EXPECT_EQ(host.readWord(0x00), 1) << "the same level through ManufacturerAccess";
}

TEST(Seal, LockClosesTheSealAgain)
{
    zvsim::Pack pack(sealed());
    Host host(pack);
    host.open();
    ASSERT_EQ(host.writeFile(3, 0, 1, password("engineer")), 0);
    ASSERT_EQ(level(host), 2);
    ASSERT_TRUE(host.writeWord(0x00, 0x0000));
    ASSERT_TRUE(host.writeWord(0x00, 0x0030));
    host.open();
    EXPECT_EQ(level(host), 0);
}

TEST(Seal, UnsetAndEmptyPasswords)
{
    zvsim::Pack pack(sealed());
    Host host(pack);
    host.open();
    EXPECT_EQ(host.writeFile(3, 0, 1, std::vector<std::uint8_t>(8, 0xFF)), 0);
    EXPECT_EQ(level(host), 0) << "the unset level 3 record never matches";
    EXPECT_EQ(host.writeFile(3, 0, 1, std::vector<std::uint8_t>(8, 0)), 0);
    EXPECT_EQ(level(host), 0) << "an empty password matches no set record";
}

TEST(Seal, PasswordRecordsAreWrittenOnlyUpToTheOwnLevel)
{
    zvsim::Pack pack(sealed());
    Host host(pack);
    host.open();
    ASSERT_EQ(host.writeFile(3, 0, 1, password("engineer")), 0);
    auto records = host.readFile(16, 0, 2);
    ASSERT_EQ(records.status, 0);
    EXPECT_EQ(
        std::string(records.data.begin() + 8, records.data.begin() + 16).c_str(), std::string("engineer"));
    std::vector<std::uint8_t> two = password("one");
    auto second = password("two");
    two.insert(two.end(), second.begin(), second.end());
    EXPECT_EQ(host.writeFile(16, 0, 2, two), 0);
    auto third = password("three");
    EXPECT_EQ(host.writeFile(16, 2, 1, third), -1);
    EXPECT_EQ(host.lastRequestStatus, 3) << "the level 3 record needs level 3";
    ASSERT_EQ(host.writeFile(3, 0, 1, password("two")), 0);
    EXPECT_EQ(level(host), 2) << "the new password opens level 2";
}

TEST(Seal, UnsealedPackStartsAtItsLevel)
{
    zvsim::PackOptions o;
    o.level = 2;
    zvsim::Pack pack(o);
    Host host(pack);
    host.open();
    EXPECT_EQ(level(host), 2);
    EXPECT_EQ(host.readFile(2, 0, 1).status, 3);
}

} // namespace
