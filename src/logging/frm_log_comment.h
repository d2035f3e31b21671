#pragma once
// The comment dialog of an open log: one text box, always on top. OK writes a COMMENT row when
// the text is not empty and clears the box; Cancel writes nothing.

#include "platform/ui/simple_controls.h"
#include "platform/ui/window.h"

#include <functional>
#include <string>

namespace zv {

class frmLogComment : public platform::ui::Window {
public:
    explicit frmLogComment(std::function<void(const std::string&)> addComment);

    platform::ui::Label lblComment { "lblComment" };
    platform::ui::TextBox txtComment { "txtComment" };
    platform::ui::Button cmdOK { "cmdOK" };
    platform::ui::Button cmdCancel { "cmdCancel" };

private:
    std::function<void(const std::string&)> addComment_;
};

} // namespace zv
