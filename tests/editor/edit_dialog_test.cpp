// The edit dialog on its own: validation notes, ranges, raw values, key filter, the hex and bit
// faces, what OK and Cancel leave, and the settings it keeps.

#include "editor/edit_rules.h"
#include "editor_fixture.h"

#include <gtest/gtest.h>

using namespace zv;

namespace {

class EditDialogTest : public ::testing::Test, public test::EditorFixture {
protected:
    // Types each text and records the note and the OK state after it.
    std::vector<std::string> typeEach(clsSMBusParameter& p, const std::vector<std::string>& texts)
    {
        std::vector<std::string> results;
        edit(p, [&](frmEditParameter& f) {
            for (const auto& text : texts) {
                f.txtNewValue.userEdit(text);
                const std::string note = f.lblValidationNote.visible() ? f.lblValidationNote.caption() : "-";
                results.push_back(note + "|" + (f.cmdOK.enabled() ? "ok" : "off"));
            }
        });
        return results;
    }
};

} // namespace

TEST_F(EditDialogTest, NumbersAreCheckedOnEveryChange)
{
    auto p = word(1, 16, "", 8);
    const auto results = typeEach(p, { "", "-", "12a", "17", "16", "1.5", "0" });
    EXPECT_EQ(results,
        (std::vector<std::string> { "-|off", // empty: no note
            "Value out of range|off", // a lone minus counts as 0
            "Invalid characters|off", "Value out of range|off", "-|ok", "-|ok", "Value out of range|off" }));
    EXPECT_EQ(seen.range, "1 to 16");
    EXPECT_EQ(seen.rawRange, "0x0001 - 0x0010");
    EXPECT_EQ(seen.currentRaw, "0x0008");
    EXPECT_EQ(seen.text, "8");
    EXPECT_TRUE(seen.okEnabled);

    auto signedWord = word(-100, 100, "", 0);
    signedWord.SubBlockDataType = 3;
    EXPECT_EQ(typeEach(signedWord, { "-", "-5" }), (std::vector<std::string> { "-|ok", "-|ok" }));
    EXPECT_EQ(seen.rawRange, "Validation for Signed Variables Not Available");
}

TEST_F(EditDialogTest, KelvinLimitsAreShownShiftedAndCheckedRounded)
{
    auto p = word(273, 373, "kelvin", 298);
    display.TemperatureUnits = 1;
    EXPECT_EQ(typeEach(p, { "-0.1", "0", "100", "100.1" }),
        (std::vector<std::string> { "Value out of range|off", "-|ok", "-|ok", "Value out of range|off" }))
        << "checked against 0 and 100";
    EXPECT_EQ(seen.range, "-0.15 Celsius to 99.85 Celsius");
    EXPECT_EQ(seen.unitNote, "Celsius");
    EXPECT_EQ(seen.text, "25.0") << "a temperature opens in its display form";

    display.TemperatureUnits = 0;
    EXPECT_EQ(typeEach(p, { "272", "373" }), (std::vector<std::string> { "Value out of range|off", "-|ok" }));
    EXPECT_EQ(seen.range, "273 kelvin to 373 kelvin");
    EXPECT_EQ(seen.unitNote, "Kelvin");

    auto rate = word(0, 10, "k/min", 2);
    display.TemperatureUnits = 1;
    EXPECT_EQ(
        typeEach(rate, { "10", "11" }), (std::vector<std::string> { "-|ok", "Value out of range|off" }));
    EXPECT_EQ(seen.range, "0 °C/Min to 10 °C/Min") << "the limits of a rate are not shifted";
    EXPECT_EQ(seen.unitNote, "°C/Min");
}

TEST_F(EditDialogTest, RemainingTimeMustBeEvenAndScaledUnitsAreNamed)
{
    auto p = word(0, 100, "Seconds RDTE", 10);
    EXPECT_EQ(typeEach(p, { "7", "8", "102" }),
        (std::vector<std::string> { "Value must be an even integer|off", "-|ok", "Value out of range|off" }));

    auto energy = word(0, 65535, "10mWh", 0);
    edit(energy, {});
    EXPECT_EQ(seen.unitNote, "Scaled in mWh / 10");
}

TEST_F(EditDialogTest, KeyFilterFollowsTheScaling)
{
    const auto passes = [&](const clsSMBusParameter& p, const std::string& keys) {
        std::string passed;
        for (const char key : keys) {
            if (keyAllowed(key, p, display))
                passed += key;
        }
        return passed;
    };
    display.locale.decimalSeparator = ',';
    auto whole = word(0, 10);
    EXPECT_EQ(passes(whole, "-1a,.9\b"), "-19\b");
    EXPECT_EQ(passes(whole, "\x7f\x1b\t\r x"), "\x7f\x1b\t\r") << "Delete, Escape and the others edit";
    whole.SubBlockDataScaling = 0.1;
    EXPECT_EQ(passes(whole, "-1a,.9\b"), "-1,9\b");
    whole.SubBlockDataScaling = 10;
    EXPECT_EQ(passes(whole, "-1a,\b"), "-1\b") << "a coarse scaling takes whole numbers";
    whole.SubBlockDataType = 6;
    EXPECT_EQ(passes(whole, "-1a,"), "-1a,");
}

TEST_F(EditDialogTest, HexTextIsUpperCasedAndTrimmedAndConvertsToAscii)
{
    auto p = word(0, 0);
    p.SubBlockDataType = 7;
    p.value = DynamicValue("4142");
    edit(
        p,
        [&](frmEditParameter& f) {
            EXPECT_EQ(f.newValueMaxLength(), 8) << "two digits a byte of the file's chunk";
            EXPECT_EQ(f.optFormat.listIndex(), 1);
            f.txtNewValue.userEdit("4142ab");
            EXPECT_EQ(f.txtNewValue.text(), "4142AB");
            f.txtNewValue.userEdit("4142ABGZ");
            EXPECT_EQ(f.txtNewValue.text(), "4142AB") << "bad characters go from the end";
            f.txtNewValue.userEdit("4142");
            f.optFormat.userSelect(0);
            EXPECT_EQ(f.txtNewValue.text(), "AB");
            f.optFormat.userSelect(0);
            EXPECT_EQ(f.txtNewValue.text(), "AB") << "choosing the same form again changes nothing";
            f.optFormat.userSelect(1);
            EXPECT_EQ(f.txtNewValue.text(), "4142");
            f.cmdOK.click();
        },
        4);
    EXPECT_EQ(seen.range, "Hex String");
    EXPECT_EQ(seen.rawRange, "Hex String");
    EXPECT_EQ(p.NewValue, DynamicValue("4142"));
    EXPECT_EQ(asciiToHex(std::string("\n") + "z"), "A7A") << "no leading zero";
}

TEST_F(EditDialogTest, BitFaceSumsTheCheckedBits)
{
    auto p = word(0, 65535, "0", 11);
    p.SubBlockDataType = 0;
    for (const char* label : { "Charging", "Discharging", "", "Reserved" })
        p.BitString.Add(label);
    edit(p, [&](frmEditParameter& f) { f.cmdOK.click(); });
    EXPECT_TRUE(seen.bitFace);
    EXPECT_TRUE(seen.okEnabled);
    EXPECT_TRUE(p.NewValue.isEmpty()) << "an untouched raw box leaves NewValue alone";
    EXPECT_EQ(pendingCalls, std::vector<bool> { true });

    dialogs.answerMessage(platform::Answer::OK);
    edit(p, [&](frmEditParameter& f) {
        ASSERT_EQ(f.lstBitEncoded.rowCount(), 3) << "unlabelled bits have no row";
        EXPECT_FALSE(f.fraParameter.visible());
        EXPECT_EQ(f.fraBitEncoded.caption(), "Test Value");
        EXPECT_TRUE(f.lstBitEncoded.row("0")->checked && f.lstBitEncoded.row("1")->checked);
        EXPECT_TRUE(f.lstBitEncoded.row("3")->checked);
        f.lstBitEncoded.userCheck("3", false);
        EXPECT_EQ(dialogs.lastShown().text, "Changing reserved bits is not recommended.");
        EXPECT_FALSE(f.lstBitEncoded.row("3")->checked) << "the change stands";
        f.lstBitEncoded.userCheck("1", false);
        EXPECT_EQ(f.txtNewValueRawBE.text(), "0x0001");
        f.cmdOK.click();
    });
    EXPECT_EQ(p.NewValue, DynamicValue(1.0));

    p.ParameterName = kBatteryModeObsolete;
    globals.settings.ChargerMode = 1;
    globals.settings.AlarmMode = 1;
    edit(p, [&](frmEditParameter& f) {
        f.lstBitEncoded.userCheck("0", false);
        EXPECT_EQ(f.txtNewValueRawBE.text(), "0x6000");
    });
    EXPECT_EQ(p.NewValue, DynamicValue(1.0)) << "Cancel keeps what was there";
}

TEST_F(EditDialogTest, OkLeavesTheTextAndAWaitingValueReopens)
{
    auto p = word(0, 100, "mV", 40);
    edit(p, [&](frmEditParameter& f) {
        f.txtNewValue.userEdit("55");
        f.cmdOK.click();
    });
    EXPECT_EQ(p.NewValue, DynamicValue("55"));
    EXPECT_EQ(pendingCalls, std::vector<bool> { true });
    edit(p, {});
    EXPECT_EQ(seen.text, "55");
    EXPECT_EQ(p.NewValue, DynamicValue("55"));
}

TEST_F(EditDialogTest, PositionAndAutoWriteAreKept)
{
    writeSetting(settings, "EditParameterTop", "99999");
    writeSetting(settings, "EditParameterLeft", "1200");
    auto p = word(0, 1);
    edit(p, [&](frmEditParameter& f) {
        EXPECT_EQ(f.bounds().top, 0) << "below the screen's 0.9";
        EXPECT_EQ(f.bounds().left, 1200);
        EXPECT_EQ(f.chkAutoWrite.value(), platform::ui::CheckBox::Unchecked);
        f.chkAutoWrite.userClick();
        f.userSetBounds({ 300, 450, f.bounds().width, f.bounds().height });
        f.requestClose();
    });
    EXPECT_TRUE(globals.settings.AutoWrite);
    EXPECT_EQ(setting("AutoWrite"), "1");
    EXPECT_EQ(setting("EditParameterTop"), "450");
    EXPECT_EQ(setting("EditParameterLeft"), "300");
}

TEST_F(EditDialogTest, InfoOpensTheTargetPageOnlyWhileNotPolling)
{
    auto p = word(0, 1);
    globals.PollingActive = true;
    edit(p, [&](frmEditParameter& f) { f.cmdInfo.click(); });
    EXPECT_EQ(helpLinks, 0);
    globals.PollingActive = false;
    edit(p, [&](frmEditParameter& f) { f.cmdInfo.click(); });
    EXPECT_EQ(helpLinks, 1);
    EXPECT_EQ(stateUpdates, 1);
}
