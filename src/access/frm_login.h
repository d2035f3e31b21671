#pragma once
// The login window: one password, sent to the device, which answers with the level it grants.

#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

namespace zv {

class UserAccess;

inline constexpr int kPasswordLength = 8; // characters of a password, the size of its record

class frmLogin : public platform::ui::Window {
public:
    explicit frmLogin(UserAccess& access);

    platform::ui::Label lblPassword { "lblPassword" };
    platform::ui::TextBox txtPassword { "txtPassword" };
    platform::ui::Label Label2 { "Label2" };
    platform::ui::Button cmdLogon { "cmdLogon" };
    platform::ui::Button btnCancel { "btnCancel" };

protected:
    void handleLoad() override;
    void handleUnload() override { txtPassword.setText({}); }
    // The close box is Cancel.
    [[nodiscard]] bool handleCloseRequest() override;

private:
    void cmdLogon_Click();
    void btnCancel_Click();
    void refuseLogin();

    UserAccess& access_;
};

// Keeps a text box to at most kPasswordLength characters as the user types.
void limitToPasswordLength(platform::ui::TextBox& box);

} // namespace zv
