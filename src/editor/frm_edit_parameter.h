#pragma once
// frmEditParameter, the modal dialog that edits one parameter. It shows the current value and the
// valid range, checks every change of the typed text at once, and on OK leaves the new value in
// the parameter's NewValue; nothing is sent to the device here. A bit-encoded word gets a second
// face: a list of its labelled bits.

#include "params/display_settings.h"
#include "platform/ui/choice_controls.h"
#include "platform/ui/list_view.h"
#include "platform/ui/show_modal.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <functional>
#include <string>

namespace zv::platform {
class SettingsStore;
}

namespace zv {

struct AppGlobals;
class ErrorHandler;
class clsSMBusParameter;

// What the dialog needs of the application and the main window.
struct EditParameterContext {
    AppGlobals& globals; // AutoWrite, ChargerMode, AlarmMode, PollingActive
    platform::SettingsStore& settings;
    platform::Dialogs& dialogs;
    std::string programFolder;
    platform::ui::ShowModal showModal;
    std::function<platform::ui::ScreenSize()> screen;
    ErrorHandler* errors = nullptr;
    // frmMain::WritePending.
    std::function<void(bool)> writePending;
    // cmdInfo: the target's information page with the commands off meanwhile (disableAllCommands,
    // OpenHelpLink, enableAllCommands), then the flag that the main window's state needs an update.
    std::function<void()> openHelpLink;
    std::function<void()> stateUpdateDue;
};

class frmEditParameter : public platform::ui::Window {
public:
    explicit frmEditParameter(EditParameterContext context);

    // Fills the dialog for the parameter and shows it modally; returns when it closes. NewValue is
    // changed on OK and untouched otherwise. The display settings are those the values are shown in.
    void EditParameter(clsSMBusParameter& parameter, const DisplaySettings& display, int fileChunk);

    // The key filter of txtNewValue: true when the typed character may enter the text.
    [[nodiscard]] bool txtNewValue_KeyPress(int keyCode) const;
    // Characters txtNewValue takes at most; 0 for no limit.
    [[nodiscard]] int newValueMaxLength() const { return maxLength_; }
    // Gives txtNewValue the focus (the Qt form fills it in).
    std::function<void()> focusNewValue;

    // Plain face.
    platform::ui::Frame fraParameter { "fraParameter" };
    platform::ui::Label lblCurrentValue { "lblCurrentValue" };
    platform::ui::Label lblValidRange { "lblValidRange" };
    platform::ui::TextBox txtNewValue { "txtNewValue" };
    platform::ui::Label lblValidationNote { "lblValidation(0)" };
    platform::ui::Label lblValidationUnit { "lblValidation(3)" };
    platform::ui::OptionGroup optFormat { "optFormat" };
    // Raw values.
    platform::ui::Frame fraRaw { "fraRaw" };
    platform::ui::Label lblCurrentValueRaw { "lblCurrentValueRaw" };
    platform::ui::Label lblValidRangeRaw { "lblValidRangeRaw" };
    platform::ui::TextBox txtNewValueRaw { "txtNewValueRaw" };
    // Bit face: one checked row a selected bit, keyed by its bit number.
    platform::ui::Frame fraBitEncoded { "fraBitEncoded" };
    platform::ui::ListView lstBitEncoded { "lstBitEncoded" };
    platform::ui::Label lblCurrentValueRawBE { "lblCurrentValueRawBE" };
    platform::ui::TextBox txtNewValueRawBE { "txtNewValueRawBE" };
    // Common.
    platform::ui::CheckBox chkAutoWrite { "chkAutoWrite" };
    platform::ui::Button cmdOK { "cmdOK" };
    platform::ui::Button cmdCancel { "cmdCancel" };
    platform::ui::Button cmdInfo { "cmdInfo" };

protected:
    void handleUnload() override;

private:
    void fill(int fileChunk);
    void fillNumeric();
    void fillBitFace();
    [[nodiscard]] std::string initialText(bool temperature) const;
    void txtNewValue_Change();
    void validateNumber();
    void lstBitEncoded_Change(const std::string& key);
    void optFormat_Click();
    void cmdOK_Click();
    void cmdInfo_Click();
    void chkAutoWrite_Click();
    void refuse(const std::string& note);
    void placeOnScreen();

    EditParameterContext c_;
    clsSMBusParameter* parameter_ = nullptr;
    DisplaySettings display_;
    int maxLength_ = 0;
    int format_ = -1; // the choice of optFormat the text is in
};

} // namespace zv
