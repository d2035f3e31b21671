#include "monitor/list_menus.h"

#include "core/active_form.h"
#include "core/globals.h"
#include "driver/cls_main.h"
#include "monitor/frm_main.h"
#include "monitor/parameter_tabs.h"
#include "monitor/poll_cycle.h"

namespace zv {

namespace {

using platform::ui::ListView;
using platform::ui::MenuItem;

constexpr int kOffline = 1;

} // namespace

ListMenus::ListMenus(MonitorContext& context, ParameterTabs& tabs, PollCycle& poll)
    : c_(context)
    , tabs_(tabs)
    , poll_(poll)
{
}

bool ListMenus::busy() const
{
    return c_.main.CellWeft().Status() == kOffline || poll_.ReadingAllParameters;
}

ListView& ListMenus::targetList() const
{
    return target_ ? *target_ : tabs_.currentParameters();
}

std::string ListMenus::targetKey() const
{
    return targetList().selectedKey();
}

void ListMenus::enable(MenuItem& item, bool on)
{
    item.setEnabled(on && c_.form.isWired(item));
}

void ListMenus::popup(MenuItem& menu)
{
    if (c_.form.popupMenu)
        c_.form.popupMenu(menu);
}

void ListMenus::showHint(ListView& list, const std::string& key, bool property)
{
    const clsSMBusParameter* parameter
        = tabs_.parameterOfRow(list, key, property ? c_.globals.CurrentNode : 0);
    const std::string hint = parameter
        ? parameter->ParameterName + ": Right click and select 'Info' for more information"
        : "Error displaying parameter description";
    c_.form.sbStatusBar.setPanelText(kInfoPanel, hint);
    c_.form.sbStatusBar.setPanelToolTip(kInfoPanel, hint);
}

void ListMenus::popupParameters(ListView& list, const std::string& key, bool property)
{
    frmMain& f = c_.form;
    const platform::ui::ListRow* row = list.row(key);
    target_ = &list;
    property_ = property;
    enable(f.mnuSelectAll, !property);
    enable(f.mnuParameters_ReadThis, !property);
    enable(f.mnuParameters_ReadAll, true);
    enable(f.mnuParameters_EditThis, row && row->icon == "readwrite");
    enable(f.mnuParameters_Revert, row && row->bold);
    enable(f.mnuParameters_RevertAll, f.PendingChanges);
    popup(f.mnuParameters);
}

void ListMenus::parametersMouseUp(ListView& list, const std::string& key, bool rightButton)
{
    if (key.empty())
        return;
    showHint(list, key, false);
    if (!rightButton || busy())
        return;
    if (list.selectedKeys().size() > 1)
        popup(c_.form.mnuParametersPopup);
    else
        popupParameters(list, key, false);
}

void ListMenus::propertiesMouseUp(ListView& list, const std::string& key, bool rightButton)
{
    if (key.empty())
        return;
    showHint(list, key, true);
    if (rightButton && !busy() && c_.globals.gNodeCount > 0)
        popupParameters(list, key, true);
}

void ListMenus::nodesMouseUp(bool rightButton)
{
    if (rightButton)
        popup(c_.form.mnulvNodes);
}

} // namespace zv
