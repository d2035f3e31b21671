#pragma once
// The level passwords dialog: the passwords of the user's own level and those below it, read from
// device file 16, one row a level, each editable on its own, written back in one request.

#include "platform/ui/choice_controls.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <array>
#include <string>

namespace zv {

class UserAccess;

inline constexpr int kPasswordRows = 3; // levels 1 to 3

class frmUserAccessLevel : public platform::ui::Window {
public:
    explicit frmUserAccessLevel(UserAccess& access);

    platform::ui::Label Label1 { "Label1" };
    platform::ui::ComboBox cmbAccessLevel { "cmbAccessLevel" };
    std::array<platform::ui::Label, kPasswordRows> lvlLevel { platform::ui::Label { "lvlLevel(0)" },
        platform::ui::Label { "lvlLevel(1)" }, platform::ui::Label { "lvlLevel(2)" } };
    std::array<platform::ui::TextBox, kPasswordRows> txtPassword { platform::ui::TextBox { "txtPassword(0)" },
        platform::ui::TextBox { "txtPassword(1)" }, platform::ui::TextBox { "txtPassword(2)" } };
    std::array<platform::ui::Button, kPasswordRows> cmdEdit { platform::ui::Button { "cmdEdit(0)" },
        platform::ui::Button { "cmdEdit(1)" }, platform::ui::Button { "cmdEdit(2)" } };
    platform::ui::Button btnOk { "btnOk" };
    platform::ui::Button btnCancel { "btnCancel" };

protected:
    void handleLoad() override;
    void handleUnload() override;

private:
    void showRows(int count);
    void cmdEdit_Click(int row);
    void btnOk_Click();
    // The rows the user may see: the level, at most the three rows.
    [[nodiscard]] int rowCount() const;

    UserAccess& access_;
};

} // namespace zv
