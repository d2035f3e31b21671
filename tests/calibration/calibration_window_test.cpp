// frmCalibration and frm470Cal on the in-process pack: calibration mode around the window, the
// steps as the device takes them, and what the simulated pack measures afterwards (its sensors
// start with seeded gain and offset errors that only calibration removes).

#include "calibration/calibration_mode.h"
#include "calibration/frm_470_cal.h"
#include "calibration/frm_calibration.h"
#include "commands/command_words.h"
#include "support/sim_harness.h"

#include <gtest/gtest.h>

namespace zv::test {
namespace {

constexpr std::uint16_t kWired = 0x08;

class CalibrationWindowTest : public ::testing::Test {
protected:
    void connect(std::uint16_t id, int cells = 0)
    {
        zvsim::PackOptions options;
        options.targetId = id;
        options.cells = cells;
        h = std::make_unique<SimHarness>(options);
        ASSERT_TRUE(h->connect(id == 0x1003 ? "ZK9470" : "ZK9460"));
        h->globals.gTargetID = id == 0x1003 ? "1003" : "1001";
        h->globals.gTempSensorCount = 5;
        files().set("Algorithm Enable", files().get("Algorithm Enable") | kWired);
        const auto previous = h->port.onOutput;
        h->port.onOutput = [this, previous](const std::string& bytes) {
            sent += bytes.size();
            previous(bytes);
        };
        mode = std::make_unique<CalibrationMode>(h->driver(), h->dialogs,
            CalibrationModeHooks { [] { return true; },
                [this] {
                    ++commits;
                    return h->driver().WriteCommandFile(command_words::kCommit);
                } });
    }

    // Opens frmCalibration in calibration mode, lets `body` work in it, then closes it.
    void withCalibrationWindow(const std::function<void(frmCalibration&)>& body)
    {
        ASSERT_TRUE(mode->ShowInCalibrationMode([&] {
            frmCalibration form({ h->driver(), h->globals, h->loop, *mode });
            form.show();
            body(form);
            form.cmdClose.click();
        }));
    }

    [[nodiscard]] zvsim::FileStore& files() { return h->pack->model().files; }
    [[nodiscard]] int deviceWord(int file, int index) { return files().word(file, 2 * index); }
    [[nodiscard]] static std::vector<std::vector<std::string>> texts(const platform::ui::ListView& list)
    {
        std::vector<std::vector<std::string>> rows;
        for (const auto& row : list.rows()) {
            rows.push_back({ row.text });
            rows.back().insert(rows.back().end(), row.subItems.begin(), row.subItems.end());
        }
        return rows;
    }
    [[nodiscard]] static std::string statusText(const frmCalibration& form) { return form.txtStatus.text(); }
    // The gateway's current as the device reports it now.
    [[nodiscard]] int reportedCurrent() { return files().getSigned("Current"); }

    std::unique_ptr<SimHarness> h;
    std::unique_ptr<CalibrationMode> mode;
    std::size_t sent = 0;
    int commits = 0;
};

TEST_F(CalibrationWindowTest, OpeningOn1001AndTwoVoltagePointsOfOneCell)
{
    connect(0x1001);
    withCalibrationWindow([&](frmCalibration& form) {
        EXPECT_TRUE(form.fraVoltage.visible());
        EXPECT_EQ(form.lblAttentionMessage.caption(),
            "The calibration process MUST be performed in the following sequence to ensure proper "
            "calibration.\n"
            "1: Calibrate Voltage\n2: Calibrate Temperature\n3: Calibrate Current");
        EXPECT_EQ(form.cmbCells.listCount(), 8);
        EXPECT_EQ(form.cmbCells.items()[7], "Cell 8");
        EXPECT_EQ(form.lvNodes.rowCount(), 8);
        EXPECT_EQ(form.lvTemperatures.rows()[1].text, "T1");
        EXPECT_EQ(form.lblTemperatureType.caption(), "Enter the ambient temperature in °C: [18 to 30]");
        EXPECT_EQ(form.lblCurrentValue.caption(), "Enter the applied current in mA [-32000 to 32000]");
        EXPECT_EQ(form.txtFirstVoltage.text(), "2800");
        EXPECT_EQ(form.txtSecondVoltage.text(), "4200");
        // The lists were read: the current gain word 32767 shows as 1.000.
        EXPECT_EQ(form.lvCurrent.row("current")->subItems[1], "1.000");
        EXPECT_NE(form.lvNodes.row("c1")->subItems[0], "");

        // Two voltage points of one cell.
        form.cmbCells.userSelect(2);
        form.cmdFirstVoltage.click(); // the shown defaults, 2800 and 4200 mV
        form.cmdSecondVoltage.click();
        EXPECT_EQ(statusText(form),
            "Setting up cell 3 calibration... success\n"
            "Sending lower voltage calibration data [2800 mV] for cell 3... success\n"
            "Sending upper voltage calibration data [4200 mV] for cell 3... success\n");
        // The reference is still applied: cell 3 reads it through its new calibration.
        h->loop.advance(2500);
        EXPECT_NEAR(files().get("Voltage", 3), 4200, 1);

        // A refused cell selection: the lower point is not sent.
        form.txtStatus.clear();
        h->pack->faults().forcedStatus = 9;
        form.cmdFirstVoltage.click();
        EXPECT_EQ(statusText(form), "Setting up cell 3 calibration... failed\n");
    });
}

// Calibration mode only while the window is open: the old word comes back after a good step, after
// a failed one, and after a body that throws; a step sets CalibrationPending, which commits.
TEST_F(CalibrationWindowTest, AlgorithmEnableComesBack)
{
    connect(0x1001);
    const auto old = files().get("Algorithm Enable");
    withCalibrationWindow([&](frmCalibration& form) {
        EXPECT_EQ(files().get("Algorithm Enable"), old | 0xF000);
        h->pack->faults().forcedStatus = 9;
        form.cmdCalZeroCurrent.click();
        EXPECT_EQ(statusText(form), "Sending zero offset calibration data... failed\n");
        EXPECT_EQ(form.txtStatus.runs().back().color, kStatusRed);
    });
    EXPECT_EQ(files().get("Algorithm Enable"), old);
    EXPECT_EQ(commits, 1) << "a failed step sets CalibrationPending too";

    EXPECT_THROW((void)mode->ShowInCalibrationMode([] { throw std::runtime_error("window failed"); }),
        std::runtime_error);
    EXPECT_EQ(files().get("Algorithm Enable"), old);

    // A device that does not answer the read of file 9: the box, and the window is never shown.
    h->pack->faults().forcedStatus = 9;
    h->dialogs.answerMessage(platform::Answer::OK);
    bool shown = false;
    EXPECT_FALSE(mode->ShowInCalibrationMode([&] { shown = true; }));
    EXPECT_FALSE(shown);
    EXPECT_EQ(h->dialogs.shown().back().title, "Failed to enter calibration mode");
    EXPECT_EQ(h->dialogs.shown().back().text,
        "An error has occurred while trying to enter calibration mode.\nPlease check hardware.");
    EXPECT_EQ(files().get("Algorithm Enable"), old);
}

// Against references applied to the simulated pack: after the offset and the gain step the pack
// reports the applied current within its 1 mA resolution, and after the temperature step its
// sensors report the ambient temperature within 0.1 K.
TEST_F(CalibrationWindowTest, CurrentAndTemperatureReachTheReferences)
{
    connect(0x1003);
    withCalibrationWindow([&](frmCalibration& form) {
        EXPECT_FALSE(form.fraVoltage.visible());
        EXPECT_EQ(form.lblAttentionMessage.caption(),
            "The calibration process MUST be performed in the following sequence to ensure proper "
            "calibration.\n"
            "1: Calibrate Temperature\n2: Calibrate Current");
        form.cmdCalZeroCurrent.click();
        EXPECT_NEAR(reportedCurrent(), 0, 1);
        form.txtAmps.userEdit("-1000");
        form.cmdCalCurrent.click();
        EXPECT_EQ(h->pack->physics().trueCurrentMa(), -1000) << "the device took 64536 as -1000 mA";
        form.txtAmps.userEdit("2000");
        form.cmdCalCurrent.click();
        EXPECT_NEAR(reportedCurrent(), 2000, 1);
        EXPECT_NEAR(std::stod(form.lvCurrent.row("current")->text), 2000, 1);
        form.txtTemperature.userEdit("25");
        form.cmdCalTemperature.click();
        for (int sensor = 0; sensor < 5; ++sensor)
            EXPECT_NEAR(deviceWord(21, sensor), 2982, 1) << "sensor " << sensor + 1;
        EXPECT_EQ(form.lvTemperatures.row("board")->subItems[0], "25.2 °C");
        EXPECT_EQ(statusText(form),
            "Sending zero offset calibration data... success\n"
            "Sending current gain calibration data [-1000 mA]... success\n"
            "Sending current gain calibration data [2000 mA]... success\n"
            "Sending temperature calibration data [25 °C]... success\n");
    });
    // Committed: the calibration is in flash.
    files().restart();
    EXPECT_NE(files().getSigned("Current Offset"), 0);
    EXPECT_NE(files().get("Current Gain"), 32767u);

    h->driver().Parameters.display.TemperatureUnits = 0;
    withCalibrationWindow([&](frmCalibration& form) {
        EXPECT_EQ(form.lblTemperatureType.caption(), "Enter the ambient temperature in K: [291 to 303]");
        for (const char* kelvin : { "290", "304" }) {
            const std::size_t before = sent;
            form.txtTemperature.userEdit(kelvin);
            form.cmdCalTemperature.click();
            EXPECT_EQ(sent, before) << kelvin;
        }
        EXPECT_EQ(form.txtStatus.text(),
            "The temperature entered is out of the valid range of 291 K to 303 K\n"
            "The temperature entered is out of the valid range of 291 K to 303 K\n");
        form.txtTemperature.userEdit("298");
        form.cmdCalTemperature.click();
        EXPECT_NEAR(deviceWord(21, 0), 2980, 1);
        EXPECT_EQ(form.lvTemperatures.row("board")->subItems[0].substr(0, 3), "298");
    });
}

TEST_F(CalibrationWindowTest, OutOfRangeSendsNothing)
{
    connect(0x1001);
    struct Case {
        const char* field;
        const char* text;
        const char* button;
        const char* status; // red text; empty: the voltage labels tell
    };
    const char* amps = "Current value is out of the valid range of -32000mA to 32000mA\n";
    const char* celsius = "The temperature entered is out of the valid range of 18°C to 30°C\n";
    const Case cases[] = {
        { "txtAmps", "32001", "cmdCalCurrent", amps },
        { "txtAmps", "-32001", "cmdCalCurrent", amps },
        { "txtAmps", "-", "cmdCalCurrent", amps },
        { "txtTemperature", "17", "cmdCalTemperature", celsius },
        { "txtTemperature", "30.5", "cmdCalTemperature", celsius },
        { "txtFirstVoltage", "2699", "cmdFirstVoltage", "" },
        { "txtSecondVoltage", "4501", "cmdSecondVoltage", "" },
    };
    withCalibrationWindow([&](frmCalibration& form) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(c.field) + " " + c.text);
            form.txtStatus.clear();
            const auto rows = texts(form.lvNodes);
            const auto current = texts(form.lvCurrent);
            const std::size_t before = sent;
            dynamic_cast<platform::ui::TextBox*>(form.findControl(c.field))->userEdit(c.text);
            dynamic_cast<platform::ui::Button*>(form.findControl(c.button))->click();
            EXPECT_EQ(sent, before) << "bytes went to the bus";
            EXPECT_EQ(form.txtStatus.text(), c.status);
            if (*c.status) {
                EXPECT_EQ(form.txtStatus.runs().back().color, kStatusRed);
            }
            EXPECT_EQ(form.lblErrorVoltageLow.visible(), std::string(c.text) == "2699");
            EXPECT_EQ(form.lblErrorVoltageHigh.visible(), std::string(c.text) == "4501");
            EXPECT_EQ(texts(form.lvNodes), rows);
            EXPECT_EQ(texts(form.lvCurrent), current);
        }
        // Leaving the fields: a bad voltage keeps the focus, an empty field takes its default.
        form.txtFirstVoltage.userEdit("");
        EXPECT_TRUE(form.leaveField(form.txtFirstVoltage));
        EXPECT_EQ(form.txtFirstVoltage.text(), "2750");
        form.txtSecondVoltage.userEdit("4600");
        EXPECT_FALSE(form.leaveField(form.txtSecondVoltage));
        form.txtAmps.userEdit("");
        EXPECT_TRUE(form.leaveField(form.txtAmps));
        EXPECT_EQ(form.txtAmps.text(), "0");
    });
}

// The wizard on target 1003 with `cells` cells; the meter's readings are the references applied to
// the simulated cells.
class VoltageWizardTest : public CalibrationWindowTest {
protected:
    void open(int cells)
    {
        connect(0x1003, cells);
        // A stored calibration that is not the cleared one, to see what is kept and restored.
        for (int node = 1; node <= 16; ++node) {
            files().setSigned("Cell " + std::to_string(node) + " Voltage Offset", node % 3 - 1);
            files().set(
                "Cell " + std::to_string(node) + " Voltage Gain", 32760u + static_cast<unsigned>(node));
        }
        files().commit();
        stored = files().bytes(24);
    }
    void applyAndEnter(frm470Cal& form, int lowMv)
    {
        for (int cell = 1; cell <= static_cast<int>(h->driver().nodes.Count()); ++cell) {
            const int mv = lowMv + 7 * cell;
            h->pack->physics().applyCellVoltage(cell, mv);
            form.txtVoltageCalLow[static_cast<std::size_t>(cell - 1)]->userEdit(std::to_string(mv));
        }
        h->loop.advance(4100); // the pack's cell poll, then tmrCalPoll
    }
    void runWizard(const std::function<void(frm470Cal&)>& body)
    {
        ASSERT_TRUE(mode->ShowInCalibrationMode([&] {
            frm470Cal form({ h->driver(), h->loop, *mode });
            form.show();
            body(form);
            form.requestClose();
        }));
    }

    std::vector<std::uint8_t> stored;
};

TEST_F(VoltageWizardTest, FourNodesCalibratedAgainstThePack)
{
    open(4);
    runWizard([&](frm470Cal& form) {
        // Cleared while open: every one of the 16 pairs, not only the pack's 4.
        for (int node = 1; node <= 16; ++node) {
            EXPECT_EQ(files().getSigned("Cell " + std::to_string(node) + " Voltage Offset"), 0);
            EXPECT_EQ(files().get("Cell " + std::to_string(node) + " Voltage Gain"), 32768u);
        }
        EXPECT_EQ(form.lvCalibration.row("c16")->subItems[0], "0"); // node 1: offset 1 % 3 - 1
        EXPECT_EQ(form.lvCalibration.row("c16")->subItems[1], "1.000");
        form.btnCalibrate.click(); // nothing entered yet
        EXPECT_EQ(form.lblError.caption(),
            "Error: There are 4 cells configured in this pack.\nPlease enter the "
            "actual voltage value for each configured cell.");
        EXPECT_EQ(form.btnCalibrate.caption(), "Next");
        applyAndEnter(form, 3000);
        form.btnCalibrate.click();
        EXPECT_EQ(form.btnCalibrate.caption(), "Calibrate");
        EXPECT_EQ(form.lblGuide.caption(), "2");
        EXPECT_EQ(form.txtVoltageCalLow[0]->text(), "-");
        applyAndEnter(form, 4000);
        form.btnCalibrate.click();
        EXPECT_EQ(form.lblGuide.caption(), "Complete!");
        EXPECT_FALSE(form.btnCalibrate.enabled());
        EXPECT_EQ(form.lblError.caption(), "");
        // Rows Cell16 to Cell13 (nodes 1 to 4) have a new calibration, Cell12 none.
        EXPECT_NE(form.lvCalibration.row("c13")->subItems[3], "");
        EXPECT_EQ(form.lvCalibration.row("c12")->subItems[3], "");
        // Words of nodes 5 to 16 are the stored pairs again.
        for (std::size_t word = gainWordOf(5) - 1; word <= gainWordOf(16); ++word)
            EXPECT_EQ(form.workingList()[word], form.storedList()[word]) << word;
        // A third voltage: the pack now measures what is applied.
        for (int cell = 1; cell <= 4; ++cell)
            h->pack->physics().applyCellVoltage(cell, 3500 + cell);
        h->loop.advance(2100);
        for (int cell = 1; cell <= 4; ++cell)
            EXPECT_NEAR(files().get("Voltage", cell), 3500 + cell, 1) << "cell " << cell;
    });
    EXPECT_FALSE(mode->CalibrationPending) << "committed on leaving";
    EXPECT_EQ(commits, 1);
    const auto now = files().bytes(24);
    EXPECT_NE(now, stored);
    EXPECT_TRUE(std::equal(now.begin() + 2 * gainWordOf(5) - 2, now.begin() + 2 * (gainWordOf(16) + 1),
        stored.begin() + 2 * gainWordOf(5) - 2));
}

// An unreadable calibration leaves the device alone; a wizard closed early puts the file back
// byte for byte.
TEST_F(VoltageWizardTest, UnreadableOrEarlyClosedLeavesTheFileAsStored)
{
    open(16);
    ASSERT_TRUE(mode->ShowInCalibrationMode([&] {
        frm470Cal form({ h->driver(), h->loop, *mode });
        h->pack->faults().forcedStatus = 9; // the read of file 24 on opening
        form.show();
        EXPECT_NE(form.lblError.caption(), "");
        EXPECT_FALSE(form.btnCalibrate.enabled());
        EXPECT_EQ(files().bytes(24), stored) << "not cleared";
        form.requestClose();
    }));
    EXPECT_EQ(files().bytes(24), stored);

    runWizard([&](frm470Cal& form) {
        EXPECT_NE(files().bytes(24), stored);
        applyAndEnter(form, 3000);
        form.btnCalibrate.click();
        EXPECT_EQ(form.lblGuide.caption(), "2");
    });
    EXPECT_EQ(files().bytes(24), stored);
    EXPECT_EQ(commits, 0);
}

TEST_F(VoltageWizardTest, EqualReadingsKeepTheOldCalibration)
{
    open(4);
    runWizard([&](frm470Cal& form) {
        applyAndEnter(form, 3000);
        form.btnCalibrate.click();
        // Cell 2 does not move (the source was not applied to it): equal readings.
        for (int cell = 1; cell <= 4; ++cell) {
            const int mv = cell == 2 ? 3000 + 14 : 4000 + 7 * cell;
            h->pack->physics().applyCellVoltage(cell, mv);
            form.txtVoltageCalLow[static_cast<std::size_t>(cell - 1)]->userEdit(
                std::to_string(mv + (cell == 2 ? 1000 : 0)));
        }
        h->loop.advance(4100);
        form.btnCalibrate.click();
        EXPECT_EQ(form.lblError.caption(),
            "Error: the device reported the same voltage at both points for Cell 15 (stored calibration "
            "kept)");
        EXPECT_EQ(form.workingList()[offsetWordOf(2)], form.storedList()[offsetWordOf(2)]);
        EXPECT_EQ(form.workingList()[gainWordOf(2)], form.storedList()[gainWordOf(2)]);
        EXPECT_NE(form.workingList()[gainWordOf(1)], form.storedList()[gainWordOf(1)]);
    });
}

} // namespace
} // namespace zv::test
