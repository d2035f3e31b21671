// The SMBus address dialog of the USB transport: its address list, the stored address and the
// scan that finds the target.

#include "connection/frm_smbus_address.h"
#include "core/globals.h"
#include "core/ini_values.h"
#include "core/temp_folder.h"
#include "platform/testing/scripted_dialogs.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

class SMBusAddressTest : public ::testing::Test {
protected:
    SMBusAddressTest()
    {
        globals.gTransport = kTransportUsbAdapter;
        globals.gINIFile = folder.file("Zentavia.ini");
    }

    SMBusAddressServices services(int answeringAddress7)
    {
        return { globals, dialogs,
            [this, answeringAddress7](int address7, int command, std::uint8_t& high, std::uint8_t& low) {
                asked.push_back(address7);
                EXPECT_EQ(command, 0);
                high = low = 0;
                return address7 == answeringAddress7 ? 0 : 2;
            },
            [this](const std::string& text) { alarmsPanel = text; },
            [this](platform::ui::Window& window) {
                window.show();
                ++shownCount;
                if (whileShown)
                    whileShown();
            } };
    }

    zv::testing::TempFolder folder;
    AppGlobals globals;
    platform::ScriptedDialogs dialogs;
    std::vector<int> asked;
    std::string alarmsPanel;
    int shownCount = 0;
    std::function<void()> whileShown;
};

} // namespace

TEST_F(SMBusAddressTest, OnTheDongleTheFeatureIsRefused)
{
    globals.gTransport = 0;
    dialogs.answerMessage(platform::Answer::OK);
    frmSMBusAddress form(services(11));
    form.Show();
    EXPECT_EQ(dialogs.lastShown().text, "This feature is not supported when using the HLK dongle.");
    EXPECT_EQ(shownCount, 0);
}

TEST_F(SMBusAddressTest, ListsEvenAddressesAndSelectsTheStoredOne)
{
    SetINIValue("Setup", "Address", "42", globals.gINIFile);
    frmSMBusAddress form(services(11));
    whileShown = [&] {
        EXPECT_EQ(form.caption(), "Zentavia - SMBus Address");
        ASSERT_EQ(form.cmbAddress.listCount(), 127);
        EXPECT_EQ(form.cmbAddress.items().front(), "0x02");
        EXPECT_EQ(form.cmbAddress.items().back(), "0xFE");
        EXPECT_EQ(form.cmbAddress.selectedText(), "0x54");
    };
    form.Show();
    EXPECT_EQ(globals.gAddress7, 42);
    EXPECT_EQ(globals.SMBusWriteAddress, 0x54);
}

TEST_F(SMBusAddressTest, TheScanStoresTheFirstAddressThatAnswers)
{
    frmSMBusAddress form(services(11));
    dialogs.answerMessage(platform::Answer::OK);
    whileShown = [&] {
        EXPECT_EQ(form.cmbAddress.selectedText(), "0x16") << "a missing Address means 11";
        form.cmbAddress.setListIndex(-1);
        form.cmdFind.click();
        EXPECT_EQ(form.cmbAddress.selectedText(), "0x16");
    };
    form.Show();
    EXPECT_EQ(asked, (std::vector<int> { 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11 }));
    EXPECT_EQ(GetINIValue("Setup", "Address", globals.gINIFile), "11");
    EXPECT_EQ(globals.gAddress7, 11);
    EXPECT_EQ(globals.SMBusWriteAddress, 0x16);
    EXPECT_EQ(alarmsPanel, "SMBus Address 0x16");
    EXPECT_EQ(dialogs.lastShown().text, "Found target device at address 0x16!");
    EXPECT_EQ(dialogs.lastShown().icon, platform::Icon::Information);
}

TEST_F(SMBusAddressTest, AScanWithoutAnswerChangesNothing)
{
    SetINIValue("Setup", "Address", "80", globals.gINIFile);
    frmSMBusAddress form(services(-1));
    dialogs.answerMessage(platform::Answer::OK);
    whileShown = [&] { form.cmdFind.click(); };
    form.Show();
    EXPECT_EQ(asked.size(), 127U);
    EXPECT_EQ(asked.back(), 127);
    EXPECT_EQ(dialogs.lastShown().text, "No target found!");
    EXPECT_EQ(GetINIValue("Setup", "Address", globals.gINIFile), "80");
    EXPECT_EQ(alarmsPanel, "");
}

TEST_F(SMBusAddressTest, InDemoModeFindDoesNothing)
{
    globals.gDemo = true;
    frmSMBusAddress form(services(11));
    whileShown = [&] { form.cmdFind.click(); };
    form.Show();
    EXPECT_TRUE(asked.empty());
    EXPECT_TRUE(dialogs.shown().empty());
}
