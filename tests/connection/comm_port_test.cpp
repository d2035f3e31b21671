// The port settings dialog: it tries ports without storing them, and stores port, baud and clock
// only on cmdComms(1), which also re-initialises the link with them.

#include "connection/frm_comm_port.h"
#include "connection_fixture.h"
#include "core/registry.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

std::string stored(test::ConnectionFixture& f, const char* name)
{
    return f.sim.settings.value(std::string(kMainKey), name);
}

} // namespace

TEST(CommPort, OpensOnTheStoredChoicesWithEmptyTexts)
{
    test::ConnectionFixture f(1);
    f.present = { 3 };
    f.sim.settings.setValue(std::string(kMainKey), "CommPort", "3");
    f.sim.settings.setValue(std::string(kMainKey), "Baud", "0");
    f.sim.settings.setValue(std::string(kMainKey), "Clock", "3");
    frmCommPort form(f.services(), f.whileShown([&] {
        EXPECT_EQ(form.caption(), "Zentavia - Configure Hardware Communications");
        EXPECT_EQ(form.lblTitle.caption(), "");
        EXPECT_EQ(form.lblErrorDescription.caption(), "");
        EXPECT_EQ(form.cmbCommPort.selectedPort(), 3);
        EXPECT_EQ(form.cmbBaud.selectedText(), "19200");
        EXPECT_EQ(form.cmbClock.selectedText(), "400K");
        form.cmbBaud.userSelect(2);
        form.cmdComms[0].click();
    }),
        nullptr);
    form.Show();
    EXPECT_EQ(f.shownCount, 1);
    EXPECT_FALSE(form.loaded());
    EXPECT_EQ(stored(f, "Baud"), "0") << "button 0 stores nothing";
}

TEST(CommPort, ConnectTellsTheOutcomeStaysOpenAndStoresNothing)
{
    test::ConnectionFixture f(1, 5);
    f.present = { 5 };
    frmCommPort form(f.services(), f.whileShown([&] {
        form.cmdConnect.click();
        EXPECT_EQ(form.lblTitle.caption(), "Communications with the hardware failed.");
        EXPECT_EQ(form.lblErrorDescription.caption(),
            "The serial port was opened successifully, but the HLK dongle was not detected.\r\n\r\n"
            "Possible causes:\r\n"
            "The HLK dongle is not installed.\r\n"
            "The wrong COM Port is selected.");

        form.cmbCommPort.userSelect(1);
        form.cmdConnect.click();
        EXPECT_EQ(form.lblTitle.caption(), "Hardware found");
        EXPECT_EQ(form.lblErrorDescription.caption(), "Connection successful");
        EXPECT_TRUE(form.visible());
        EXPECT_EQ(form.cmbCommPort.items(), (std::vector<std::string> { "COM5 (Default)" }))
            << "the list is filled anew around the new port";
    }),
        nullptr);
    form.Show();
    EXPECT_EQ(f.sim.driver().Link.SMBusCommPort, 5);
    EXPECT_EQ(stored(f, "CommPort"), "");
}

TEST(CommPort, CommsOneStoresTheChoicesAndReinitialisesTheLink)
{
    test::ConnectionFixture f(1, 1);
    ASSERT_EQ(f.sim.driver().SMBus_Init(), 0);
    f.present = { 4 };
    std::string commPanel;
    frmCommPort form(f.services(), f.whileShown([&] {
        form.cmbCommPort.userSelect(1);
        form.cmbBaud.userSelect(1);
        form.cmbClock.userSelect(3);
        f.sim.port.clearWritten();
        form.cmdComms[1].click();
        EXPECT_FALSE(form.visible());
    }),
        [&](const std::string& text) { commPanel = text; });
    form.Show();

    EXPECT_EQ(commPanel, "COM4");
    EXPECT_EQ(stored(f, "CommPort"), "4");
    EXPECT_EQ(stored(f, "Baud"), "1");
    EXPECT_EQ(stored(f, "Clock"), "3");
    EXPECT_EQ(f.sim.globals.settings.CommPort, 4);
    EXPECT_EQ(f.sim.globals.settings.Baud, 1);
    EXPECT_EQ(f.sim.globals.settings.Clock, 3);
    const auto& link = f.sim.driver().Link;
    EXPECT_EQ(link.SMBusCommPort, 4);
    const auto& written = f.sim.port.written();
    EXPECT_NE(written.find("/B1\r"), std::string::npos) << "the dongle is configured anew";
    EXPECT_NE(written.find("/K3\r"), std::string::npos);
}
