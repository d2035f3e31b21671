// The seal: levels at power-on, the login through file 3 with the passwords of file 16, and what
// the levels open.

#include "sim_device/host.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::uint8_t> password(const std::string& text)
{
    std::vector<std::uint8_t> bytes(8, 0);
    std::copy(text.begin(), text.end(), bytes.begin());
    return bytes;
}

class Seal : public ::testing::Test, public simtest::OpenPack {
protected:
    explicit Seal(const std::string& secret = "")
        : OpenPack({ .sealed = true, .password = secret })
    {
    }
    int level() { return host.word(5, 0); }
    int login(const std::string& text) { return host.writeFile(3, 0, 1, password(text)); }
};

class SealWithSecret : public Seal {
protected:
    SealWithSecret()
        : Seal("S3cret")
    {
    }
};

TEST_F(SealWithSecret, OpensWithTheLevelPasswordOfFile16)
{
    EXPECT_EQ(level(), 0);
    EXPECT_EQ(host.readFile(10, 0, 11).status, 1);
    EXPECT_EQ(login("wrong"), 0) << "the write itself succeeds";
    EXPECT_EQ(level(), 0) << "a wrong password changes nothing";
    EXPECT_EQ(login("S3cret"), 0);
    EXPECT_EQ(level(), 2);
    EXPECT_EQ(host.readFile(10, 0, 11).status, 0);
    EXPECT_EQ(login("user"), 0);
    EXPECT_EQ(level(), 1);
    ASSERT_TRUE(host.writeWord(0x00, 0xC01A));
    EXPECT_EQ(host.readWord(0x00), 1) << "the same level through ManufacturerAccess";
}

// The lock, and rewriting the records below the own level, run in the access tests.
TEST_F(Seal, UnsetAndEmptyPasswordsNeverMatchAndTheTopRecordNeedsTheTopLevel)
{
    EXPECT_EQ(host.writeFile(3, 0, 1, std::vector<std::uint8_t>(8, 0xFF)), 0);
    EXPECT_EQ(level(), 0) << "the unset level 3 record never matches";
    EXPECT_EQ(host.writeFile(3, 0, 1, std::vector<std::uint8_t>(8, 0)), 0);
    EXPECT_EQ(level(), 0) << "an empty password matches no set record";

    ASSERT_EQ(login("engineer"), 0);
    ASSERT_EQ(level(), 2);
    EXPECT_EQ(host.writeFile(16, 2, 1, password("three")), -1);
    EXPECT_EQ(host.lastRequestStatus, 3) << "the level 3 record needs level 3";
}

} // namespace
