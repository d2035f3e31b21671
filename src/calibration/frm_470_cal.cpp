#include "calibration/frm_470_cal.h"

#include "calibration/calibration_data.h"
#include "calibration/calibration_mode.h"
#include "driver/cellweft.h"
#include "params/number_text.h"
#include "platform/event_loop.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace zv {

namespace {

constexpr int kCellDynamicFile = 4;
constexpr const char* kNext = "Next";
constexpr const char* kCalibrate = "Calibrate";
constexpr const char* kWriteFailed = "Write to flash failed";

std::string rowKey(int row)
{
    return "c" + std::to_string(row);
}

} // namespace

frm470Cal::frm470Cal(VoltageWizardServices services)
    : platform::ui::Window("frm470Cal")
    , s_(services)
{
    setCaption("Zentavia - ZK9470 Voltage Calibration");
    lblTitle.setCaption("Two Point Calibration Procedure");
    addControls({ &lblTitle, &lblGuide, &lblInstructions[0], &lblInstructions[1], &lvCalibration, &lblError,
        &btnCalibrate, &btnReset });
    for (int i = 0; i < kWizardNodes; ++i) {
        const std::string index = "(" + std::to_string(i) + ")";
        lblCell.push_back(std::make_unique<platform::ui::Label>("lblCell" + index));
        lblCell.back()->setCaption("Cell " + std::to_string(kWizardNodes - i));
        txtCellVoltage.push_back(std::make_unique<platform::ui::TextBox>("txtCellVoltage" + index));
        txtCellVoltage.back()->setLocked(true);
        txtVoltageCalLow.push_back(std::make_unique<platform::ui::TextBox>("txtVoltageCalLow" + index));
        addControls({ lblCell.back().get(), txtCellVoltage.back().get(), txtVoltageCalLow.back().get() });
    }
    lvCalibration.setColumns(
        { { "Cell", 900 }, { "Offset", 1100 }, { "Gain", 1100 }, { "Offset", 1100 }, { "Gain", 1100 } });
    btnCalibrate.setCaption(kNext);
    btnReset.setCaption("Reset");
    btnCalibrate.onClick = [this] { btnCalibrate_Click(); };
    btnReset.onClick = [this] { btnReset_Click(); };
    tmrCalPoll = s_.loop.createTimer();
    tmrCalPoll->setInterval(kCalPollMs);
    tmrCalPoll->onTick = [this] { tmrCalPoll_Timer(); };
}

frm470Cal::~frm470Cal()
{
    tmrCalPoll->setEnabled(false);
}

bool frm470Cal::entryKey(char32_t key)
{
    return key <= 26 || std::u32string_view(U"-0123456789").find(key) != std::u32string_view::npos;
}

int frm470Cal::nodeCount() const
{
    return std::min(s_.driver.nodes.Count(), kWizardNodes);
}

void frm470Cal::handleLoad()
{
    calibrated_ = false;
    lblError.setCaption("");
    lblInstructions[0].setCaption("Step 1:\n- Apply a low voltage source to each cell. (3V Recommended)\n- "
                                  "Measure the actual voltage for "
                                  "each cell with a precision calibrated meter and enter the value in the "
                                  "corresponding textbox.\n- Click "
                                  "the Next button to continue.");
    lblInstructions[1].setCaption("Step 2:\n- Apply a high voltage source to each cell. (4V Recommended)\n- "
                                  "Measure the actual voltage for "
                                  "each cell with a precision calibrated meter and enter the value in the "
                                  "corresponding textbox.\n- Click "
                                  "the Calibrate button to complete.");
    btnCalibrate.setCaption(kNext);
    btnCalibrate.setEnabled(true);
    lblGuide.setCaption("1");
    lblInstructions[0].setForeColor(kInstructionGreen);
    lblInstructions[1].setForeColor(kInstructionGrey);
    for (auto& field : txtVoltageCalLow)
        field->setText("-");
    showMeasured();
    ReadStoredCalibration();
    if (stored_.empty()) {
        // Nothing to restore later: the device is left as it is and the wizard cannot run.
        lblError.setCaption("Error: The calibration data could not be read from the device.\nThe device "
                            "calibration has not been changed.");
        btnCalibrate.setEnabled(false);
        btnReset.setEnabled(false);
        return;
    }
    btnReset.setEnabled(true);
    ClearCalibration();
    tmrCalPoll->setEnabled(true);
}

void frm470Cal::handleUnload()
{
    tmrCalPoll->setEnabled(false);
    if (!calibrated_)
        RestoreStoredCalibration();
}

void frm470Cal::showMeasured()
{
    for (int node = 1; node <= nodeCount(); ++node) {
        const auto* parameter = s_.driver.nodes.Item(node)->NodeParameters.Item(1);
        if (!parameter)
            continue;
        const auto value = parameter->value.asNumber(s_.driver.Parameters.display.locale);
        txtCellVoltage[static_cast<std::size_t>(node - 1)]->setText(
            value ? std::to_string(std::lround(*value)) : std::string());
    }
}

void frm470Cal::tmrCalPoll_Timer()
{
    std::string text;
    if (s_.driver.GetFile(kCellDynamicFile, text))
        showMeasured();
}

void frm470Cal::ReadStoredCalibration()
{
    stored_.clear();
    std::string text;
    if (s_.driver.GetFile(kCalibrationFile, text))
        stored_ = fileWords(text);
    working_ = stored_;
    lvCalibration.clear();
    const auto& locale = s_.driver.Parameters.display.locale;
    for (int n = 1; n <= kWizardNodes; ++n) {
        const int node = kWizardNodes + 1 - n;
        std::string offset;
        std::string gain;
        if (gainWordOf(node) < stored_.size()) {
            offset = std::to_string(signedWord(stored_[offsetWordOf(node)]));
            const std::uint16_t word = stored_[gainWordOf(node)];
            gain = word ? formatNumber(32768.0 / word, "0.000", locale) : std::string();
        }
        lvCalibration.addRow({ rowKey(n), "Cell" + std::to_string(n), {}, { offset, gain, "", "" } });
    }
}

bool frm470Cal::WriteCalibration(const std::vector<std::uint16_t>& list)
{
    const bool ok = writeWholeFile(s_.driver, kCalibrationFile, wordBytes(list));
    if (!ok)
        lblError.setCaption(kWriteFailed);
    return ok;
}

void frm470Cal::ClearCalibration()
{
    (void)WriteCalibration(clearedCalibration(stored_));
}

void frm470Cal::RestoreStoredCalibration()
{
    if (!stored_.empty())
        (void)WriteCalibration(stored_);
}

void frm470Cal::clearEntries()
{
    for (auto& field : txtVoltageCalLow)
        field->setText("-");
    if (focusFirstEntry)
        focusFirstEntry();
}

bool frm470Cal::ValidateEntries()
{
    lblError.setCaption("");
    for (int node = 1; node <= nodeCount(); ++node) {
        const std::string& text = txtVoltageCalLow[static_cast<std::size_t>(node - 1)]->text();
        if (text.empty() || text == "-") {
            lblError.setCaption("Error: There are " + std::to_string(nodeCount())
                + " cells configured in this pack.\nPlease enter the actual voltage value for each "
                  "configured cell.");
            return false;
        }
    }
    return true;
}

void frm470Cal::TakeReadings(std::array<int, kWizardNodes>& actual, std::array<int, kWizardNodes>& measured)
{
    for (std::size_t i = 0; i < kWizardNodes; ++i) {
        const std::string& entry = txtVoltageCalLow[i]->text();
        const auto value = entryNumber(entry);
        if (entry.empty() || entry == "-" || !value) {
            actual[i] = 0;
            measured[i] = 0;
            continue;
        }
        actual[i] = static_cast<int>(std::lround(*value));
        measured[i] = static_cast<int>(std::lround(entryNumber(txtCellVoltage[i]->text()).value_or(0)));
    }
}

void frm470Cal::ComputeCalibration()
{
    tmrCalPoll->setEnabled(false);
    working_ = stored_;
    if (working_.size() <= gainWordOf(kWizardNodes))
        working_.resize(gainWordOf(kWizardNodes) + 1, 0);
    const auto& locale = s_.driver.Parameters.display.locale;
    // Cells whose result does not fit the device, by reason; their stored pairs stay.
    std::vector<std::pair<std::string, std::string>> refused;
    for (int i = 0; i < kWizardNodes && i + 1 <= nodeCount(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        const int node = i + 1;
        const std::string row = rowKey(kWizardNodes - i);
        const std::string cell = "Cell " + std::to_string(kWizardNodes - i);
        std::string error;
        const auto result = computeCellCalibration(
            lowActual_[at], lowMeasured_[at], highActual_[at], highMeasured_[at], error);
        if (!result) {
            const auto same = std::find_if(
                refused.begin(), refused.end(), [&error](const auto& entry) { return entry.first == error; });
            if (same == refused.end())
                refused.emplace_back(error, cell);
            else
                same->second += ", " + cell;
            continue;
        }
        working_[gainWordOf(node)] = result->gainWord;
        working_[offsetWordOf(node)] = result->offsetWord;
        lvCalibration.setSubItem(row, 3, std::to_string(result->offsetMv));
        lvCalibration.setSubItem(row, 4, formatNumber(result->slope, "0.000", locale));
    }
    std::string errors;
    for (const auto& [reason, cells] : refused)
        errors += (errors.empty() ? "Error: " : "\n") + reason + " " + cells + " (stored calibration kept)";
    lblError.setCaption(errors);
    (void)WriteCalibration(working_);
    tmrCalPoll->setEnabled(true);
}

void frm470Cal::ShowStep1()
{
    btnCalibrate.setEnabled(true);
    btnCalibrate.setCaption(kNext);
    lblGuide.setCaption("1");
    lblInstructions[0].setForeColor(kInstructionGreen);
    lblInstructions[1].setForeColor(kInstructionGrey);
    clearEntries();
}

void frm470Cal::ShowStep2()
{
    btnCalibrate.setCaption(kCalibrate);
    lblGuide.setCaption("2");
    lblInstructions[0].setForeColor(kInstructionGrey);
    lblInstructions[1].setForeColor(kInstructionGreen);
    TakeReadings(lowActual_, lowMeasured_);
    clearEntries();
}

void frm470Cal::Complete()
{
    btnCalibrate.setEnabled(false);
    lblGuide.setCaption("Complete!");
    lblInstructions[0].setForeColor(kInstructionGrey);
    lblInstructions[1].setForeColor(kInstructionGrey);
    TakeReadings(highActual_, highMeasured_);
    ComputeCalibration();
    calibrated_ = true;
    s_.mode.CalibrationPending = true;
    clearEntries();
}

void frm470Cal::btnCalibrate_Click()
{
    if (!ValidateEntries())
        return;
    if (btnCalibrate.caption() == kNext)
        ShowStep2();
    else
        Complete();
}

void frm470Cal::btnReset_Click()
{
    calibrated_ = false;
    ClearCalibration();
    ShowStep1();
    for (int n = 1; n <= kWizardNodes; ++n) {
        lvCalibration.setSubItem(rowKey(n), 3, "");
        lvCalibration.setSubItem(rowKey(n), 4, "");
    }
    tmrCalPoll->setEnabled(true);
}

} // namespace zv
