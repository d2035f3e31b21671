#include "core/active_form.h"

#include "platform/ui/status_bar.h"

namespace zv {

bool ActiveForm::showInfo(const std::string& text)
{
    platform::ui::StatusBar* bar = form_ && form_->loaded() ? form_->statusBar() : nullptr;
    if (!bar || !bar->hasPanel(kInfoPanel)) {
        form_ = mainForm_;
        return false;
    }
    bar->setPanelText(kInfoPanel, text);
    return true;
}

} // namespace zv
