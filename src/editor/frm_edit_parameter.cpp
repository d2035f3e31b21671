#include "editor/frm_edit_parameter.h"

#include "connection/dialog_errors.h"
#include "core/globals.h"
#include "core/settings_table.h"
#include "core/window_placement.h"
#include "editor/edit_rules.h"
#include "params/hex_text.h"
#include "params/number_text.h"
#include "params/smbus_parameter.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace zv {

namespace {

using platform::ui::CheckBox;

constexpr const char* kOpenObject = "EditParameter";
constexpr const char* kChangeObject = "EditParameters";
constexpr PlacementKeys kPlacement { "EditParameterTop", "EditParameterLeft" };
constexpr int kFormWidth = 5700; // twips
constexpr int kFormHeight = 5400;
constexpr int kBitCount = 16;
constexpr int kAscii = 0;
constexpr int kHex = 1;

std::string upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
        [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

} // namespace

frmEditParameter::frmEditParameter(EditParameterContext context)
    : Window("frmEditParameter")
    , c_(std::move(context))
{
    setCaption("Zentavia - Edit Parameter");
    chkAutoWrite.setCaption("Auto write value on Ok");
    cmdOK.setCaption("OK");
    cmdCancel.setCaption("Cancel");
    cmdInfo.setCaption("Info");
    fraRaw.setCaption("Raw Values");
    optFormat.setItems({ "ASCII", "HEX" });
    lstBitEncoded.setColumns({ { "Bit", 4200 } });
    lstBitEncoded.setCheckBoxes(true);
    txtNewValueRaw.setLocked(true);

    txtNewValue.onChange = [this] { txtNewValue_Change(); };
    lstBitEncoded.onItemCheck = [this](const std::string& key, bool) {
        runGuarded(c_.errors, kChangeObject, "lstBitEncoded_Click", [&] { lstBitEncoded_Change(key); });
    };
    optFormat.onClick = [this] { optFormat_Click(); };
    cmdOK.onClick = [this] { cmdOK_Click(); };
    cmdCancel.onClick = [this] { hide(); };
    cmdInfo.onClick = [this] { cmdInfo_Click(); };
    chkAutoWrite.onClick = [this] { chkAutoWrite_Click(); };

    addControls({ &fraParameter, &lblCurrentValue, &lblValidRange, &txtNewValue, &lblValidationNote,
        &lblValidationUnit, &optFormat, &fraRaw, &lblCurrentValueRaw, &lblValidRangeRaw, &txtNewValueRaw,
        &fraBitEncoded, &lstBitEncoded, &lblCurrentValueRawBE, &txtNewValueRawBE, &chkAutoWrite, &cmdOK,
        &cmdCancel, &cmdInfo });
}

void frmEditParameter::EditParameter(
    clsSMBusParameter& parameter, const DisplaySettings& display, int fileChunk)
{
    parameter_ = &parameter;
    display_ = display;
    load();
    runGuarded(c_.errors, kOpenObject, "EditParameter", [&] { fill(fileChunk); });
    placeOnScreen();
    c_.showModal(*this);
    unload();
    parameter_ = nullptr;
}

bool frmEditParameter::txtNewValue_KeyPress(int keyCode) const
{
    return !parameter_ || keyAllowed(keyCode, *parameter_, display_);
}

void frmEditParameter::handleUnload()
{
    storePlacement(c_.settings, kPlacement, bounds());
}

void frmEditParameter::placeOnScreen()
{
    const auto screen = c_.screen ? c_.screen() : platform::ui::ScreenSize {};
    auto place = readPlacement(c_.settings, kPlacement, screen, c_.programFolder);
    place.width = kFormWidth;
    place.height = kFormHeight;
    setBounds(place);
}

void frmEditParameter::fill(int fileChunk)
{
    const clsSMBusParameter& p = *parameter_;
    chkAutoWrite.setValue(c_.globals.settings.AutoWrite ? CheckBox::Checked : CheckBox::Unchecked);
    fraParameter.setCaption(p.ParameterName);
    lblCurrentValue.setCaption(p.ToString(0, display_));
    lblValidationNote.setVisible(false);
    lblValidationUnit.setCaption({});
    lblValidationUnit.setVisible(true);
    lblCurrentValueRaw.setCaption({});
    optFormat.setVisible(false);
    cmdOK.setEnabled(true);
    maxLength_ = 0;
    format_ = -1;

    bool temperature = false;
    if (p.SubBlockDataType == 6 || p.SubBlockDataType == 7) {
        const bool text = p.SubBlockDataType == 6;
        lblValidRange.setCaption(text ? kStringRange : kHexStringRange);
        maxLength_ = text ? fileChunk : 2 * fileChunk;
        lblValidationUnit.setVisible(false);
        format_ = text ? kAscii : kHex;
        optFormat.setListIndex(format_);
        optFormat.setVisible(true);
    } else {
        const auto value = p.value.asNumber(display_.locale);
        lblCurrentValueRaw.setCaption(value ? rawHex(*value, p).value_or("#Error") : "#Error");
        const RangeText range = numericRangeText(p, display_);
        lblValidRange.setCaption(range.range);
        lblValidationUnit.setCaption(range.unitNote);
        temperature = range.temperature;
    }
    lblValidRangeRaw.setCaption(rawRangeText(p));
    txtNewValueRaw.setText({});
    txtNewValue.setText(initialText(temperature));
    txtNewValue_Change();

    const bool bitFace = p.SubBlockDataType == 0;
    if (bitFace)
        fillBitFace();
    fraParameter.setVisible(!bitFace);
    fraRaw.setVisible(!bitFace);
    fraBitEncoded.setVisible(bitFace);
}

std::string frmEditParameter::initialText(bool temperature) const
{
    const clsSMBusParameter& p = *parameter_;
    if (p.NewValue.hasContent())
        return p.NewValue.toText(display_.locale);
    if (temperature)
        return p.ToString(2, display_);
    return p.value.toText(display_.locale);
}

void frmEditParameter::fillBitFace()
{
    const clsSMBusParameter& p = *parameter_;
    const std::string& text = txtNewValue.text();
    const auto word = static_cast<std::int64_t>(
        std::llround(text.empty() ? 0.0 : parseNumber(text, display_.locale.decimalSeparator).value_or(0.0)));
    lstBitEncoded.clear();
    for (int bit = 0; bit < kBitCount; ++bit) {
        const clsBitString* label = p.BitString.Item(bit + 1);
        if (!label || label->data.empty())
            continue;
        platform::ui::ListRow row;
        row.key = std::to_string(bit);
        row.text = label->data;
        row.checked = !text.empty() && ((word >> bit) & 1) != 0;
        lstBitEncoded.addRow(std::move(row));
    }
    lblCurrentValueRawBE.setCaption(lblCurrentValueRaw.caption());
    txtNewValueRawBE.setText(txtNewValueRaw.text());
    fraBitEncoded.setCaption(fraParameter.caption());
    cmdOK.setEnabled(true);
}

void frmEditParameter::txtNewValue_Change()
{
    if (!parameter_)
        return;
    runGuarded(c_.errors, kChangeObject, "txtNewValue_Change", [this] {
        const std::string& rule = lblValidRange.caption();
        if (rule == kHexStringRange) {
            // Upper case; bad characters go one at a time from the end.
            txtNewValue.setText(trimToHex(upper(txtNewValue.text())));
        } else if (rule != kStringRange) {
            validateNumber();
        }
    });
}

void frmEditParameter::validateNumber()
{
    const NumberVerdict verdict = zv::validateNumber(txtNewValue.text(), *parameter_, display_);
    if (!verdict.accepted) {
        refuse(verdict.note);
        return;
    }
    lblValidationNote.setVisible(false);
    cmdOK.setEnabled(true);
}

void frmEditParameter::refuse(const std::string& note)
{
    lblValidationNote.setCaption(note);
    lblValidationNote.setVisible(!note.empty());
    txtNewValueRaw.setText({});
    cmdOK.setEnabled(false);
}

void frmEditParameter::lstBitEncoded_Change(const std::string& key)
{
    const auto* row = lstBitEncoded.row(key);
    if (row && row->text == kReservedBit)
        c_.dialogs.messageBox("Changing reserved bits is not recommended.", platform::Buttons::OK,
            platform::Icon::Information, "");
    std::vector<int> selected;
    for (const auto& r : lstBitEncoded.rows()) {
        if (r.checked)
            selected.push_back(std::stoi(r.key));
    }
    const auto word = bitWord(
        selected, parameter_->ParameterName, c_.globals.settings.ChargerMode, c_.globals.settings.AlarmMode);
    txtNewValueRawBE.setText(
        convertToHex(DynamicValue(static_cast<double>(word)), 0).value_or(std::string()));
}

void frmEditParameter::optFormat_Click()
{
    const int chosen = optFormat.listIndex();
    if (chosen == format_)
        return;
    format_ = chosen;
    txtNewValue.setText(chosen == kAscii ? hexToAscii(txtNewValue.text()) : asciiToHex(txtNewValue.text()));
    txtNewValue_Change();
    if (focusNewValue)
        focusNewValue();
}

void frmEditParameter::cmdOK_Click()
{
    clsSMBusParameter& p = *parameter_;
    if (p.SubBlockDataType == 0) {
        const std::string raw = trimBlanks(txtNewValueRawBE.text());
        if (!raw.empty()) {
            if (const auto word = convertToInt(raw))
                p.NewValue = DynamicValue(static_cast<double>(static_cast<std::int32_t>(*word)));
        }
    } else {
        p.NewValue = DynamicValue(txtNewValue.text());
    }
    if (c_.writePending)
        c_.writePending(true);
    hide();
}

void frmEditParameter::cmdInfo_Click()
{
    if (c_.globals.PollingActive)
        return;
    if (c_.openHelpLink)
        c_.openHelpLink();
    if (c_.stateUpdateDue)
        c_.stateUpdateDue();
}

void frmEditParameter::chkAutoWrite_Click()
{
    c_.globals.settings.AutoWrite = chkAutoWrite.value() == CheckBox::Checked;
    writeSetting(c_.settings, "AutoWrite", std::to_string(chkAutoWrite.value()));
}

} // namespace zv
