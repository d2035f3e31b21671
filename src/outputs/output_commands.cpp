#include "outputs/output_commands.h"

#include "monitor/frm_main.h"
#include "platform/ui/list_view.h"
#include "platform/ui/tab_strip.h"

namespace zv {

OutputCommands::OutputCommands(OutputServices services, std::function<void(platform::ui::Window&)> showModal)
    : services(std::move(services))
    , showModal_(std::move(showModal))
{
}

void OutputCommands::mnuPreferences_Click()
{
    if (showModal_)
        showModal_(preferences);
    else
        preferences.show();
}

template <typename Action> void OutputCommands::onCurrentTab(Action action)
{
    const ParameterViews views = services.views ? services.views() : ParameterViews {};
    const auto tab = static_cast<std::size_t>(views.currentTab);
    if (!views.packTabs || tab >= views.packLists.size() || !views.packLists[tab]
        || views.currentTab >= views.packTabs->tabCount())
        return;
    action(*views.packLists[tab], views.packTabs->tabs()[tab].caption);
}

void OutputCommands::mnuSaveCSVFile_Click()
{
    onCurrentTab([this](platform::ui::ListView& list, const std::string& caption) {
        lists.SaveTabToCSV(list, caption);
    });
}

void OutputCommands::mnuPrintLvParameters_Click()
{
    onCurrentTab([this](platform::ui::ListView& list, const std::string& caption) {
        lists.PrintParameters(list, caption);
    });
}

void wireOutputCommands(frmMain& form, OutputCommands& commands)
{
    form.mnuSaveAsReadOnly.onClick = [&commands] { commands.summary.Save(SummaryMode::Dynamic); };
    form.mnuSaveAsWriteOnly.onClick = [&commands] { commands.summary.Save(SummaryMode::Static); };
    form.mnuSaveAsAllParameters.onClick = [&commands] { commands.summary.Save(SummaryMode::All); };
    form.mnuPreferences.onClick = [&commands] { commands.mnuPreferences_Click(); };
    form.mnuSaveCSVFile.onClick = [&commands] { commands.mnuSaveCSVFile_Click(); };
    form.mnuPrintLvParameters.onClick = [&commands] { commands.mnuPrintLvParameters_Click(); };
    form.refreshAvailability();
}

} // namespace zv
