#include "logging/frm_log_comment.h"

namespace zv {

frmLogComment::frmLogComment(std::function<void(const std::string&)> addComment)
    : Window("frmLogComment")
    , addComment_(std::move(addComment))
{
    setCaption("Add Comment");
    setAlwaysOnTop(true);
    lblComment.setCaption("Comment:");
    cmdOK.setCaption("OK");
    cmdCancel.setCaption("Cancel");
    addControls({ &lblComment, &txtComment, &cmdOK, &cmdCancel });
    cmdOK.onClick = [this] {
        if (!txtComment.text().empty() && addComment_)
            addComment_(txtComment.text());
        txtComment.setText({});
        hide();
    };
    cmdCancel.onClick = [this] { hide(); };
}

} // namespace zv
