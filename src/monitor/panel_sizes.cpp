#include "monitor/panel_sizes.h"

#include "monitor/frm_main.h"

namespace zv {

namespace {

constexpr const char* kCollapse = "Collapse Panel";
constexpr const char* kExpand = "Expand Panel";

// Folds the controls away or back; the button names what a click does next.
void toggle(platform::ui::Button& button, std::initializer_list<platform::ui::Control*> controls)
{
    const bool show = button.caption() == kExpand;
    for (auto* control : controls)
        control->setVisible(show);
    button.setCaption(show ? kCollapse : kExpand);
}

} // namespace

void spreadColumns(platform::ui::ListView& list, int width)
{
    auto columns = list.columns();
    if (columns.empty() || width <= 0)
        return;
    const int share = width / static_cast<int>(columns.size());
    for (auto& column : columns)
        column.widthTwips = share;
    columns.back().widthTwips += width - share * static_cast<int>(columns.size());
    list.setColumns(std::move(columns));
}

void wirePanelSizes(frmMain& form)
{
    auto& p = form.lvProperties;
    form.cmdCollapseCells.setCaption(kCollapse);
    form.cmdCollapseCells.onClick = [&form, &p] {
        toggle(form.cmdCollapseCells, { &form.lvNodes, &form.SSTab1, &p[0], &p[1], &p[2] });
    };
    form.cmdCollapsePack.setCaption(kCollapse);
    form.cmdCollapsePack.onClick = [&form] { toggle(form.cmdCollapsePack, { &form.lvGateway }); };
    form.onResize = [&form] { spreadColumns(form.lvNodes, form.lvNodes.bounds().width); };
}

} // namespace zv
