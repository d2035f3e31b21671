#include "logging/frm_log_wizard.h"

#include "core/settings_table.h"
#include "driver/cellweft.h"
#include "logging/log_wizard_rules.h"
#include "monitor/frm_main.h"
#include "platform/atomic_file.h"
#include "platform/dialogs.h"

#include <filesystem>
#include <fstream>

namespace zv {

namespace {

constexpr int kAdvancedLevel = 3;
constexpr std::int16_t kFirstPage = -3;
constexpr const char* kTitle = "Zentavia";
constexpr platform::Rgb kStripe = 0xF5F0E8;

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

void stripe(platform::ui::ListView& list)
{
    int i = 0;
    for (const auto& row : list.rows())
        list.setBackColor(row.key, i++ % 2 ? std::optional<platform::Rgb>(kStripe) : std::nullopt);
}

} // namespace

frmLogWizard::frmLogWizard(LogWizardServices services)
    : Window("frmLogWizard")
    , s_(std::move(services))
{
    setCaption("Zentavia - Log Definition Tool");
    ListSource.setColumns({ { "Available Parameters", 4320 }, { "", 0 } });
    ListDestination.setColumns({ { "Logged Parameters", 4320 }, { "", 0 } });
    btnNavigate[0].setCaption("\u25C0");
    btnNavigate[1].setCaption("\u25B6");
    btnReset.setCaption("Reset");
    btnGenerateFile.setCaption("Generate");
    mnuFile.setCaption("&File");
    mnuExit.setCaption("E&xit");
    mnuCommand.setCaption("&Command");
    mnuReset.setCaption("&Reset");
    mnuGenerateFile.setCaption("&Generate File");
    addControls({ &ListSource, &ListDestination, &lblTab, &lblCounter, &btnNavigate[0], &btnNavigate[1],
        &btnReset, &btnGenerateFile, &mnuFile, &mnuExit, &mnuCommand, &mnuReset, &mnuGenerateFile });
    btnNavigate[0].onClick = [this] { turnPage(-1); };
    btnNavigate[1].onClick = [this] { turnPage(1); };
    btnReset.onClick = [this] { reset(); };
    mnuReset.onClick = [this] { reset(); };
    btnGenerateFile.onClick = [this] { generate(); };
    mnuGenerateFile.onClick = [this] { generate(); };
    mnuExit.onClick = [this] { unload(); };
    ListSource.onDblClick = [this](const std::string& key) { (void)moveToLogged(key); };
    ListDestination.onDblClick = [this](const std::string& key) { moveBack(key); };
}

void frmLogWizard::handleLoad()
{
    countStrides();
    reset();
}

void frmLogWizard::countStrides()
{
    ParametersInFile4 = ParametersInFile6 = ParametersInFile12 = 0;
    const auto* cell = s_.driver.nodes.Item(1);
    if (!cell)
        return;
    for (const auto& parameter : cell->NodeParameters) {
        ParametersInFile4 += parameter.FileNumber == 4;
        ParametersInFile6 += parameter.FileNumber == 6;
        ParametersInFile12 += parameter.FileNumber == 12;
    }
}

void frmLogWizard::reset()
{
    ListSource.clear();
    ListDestination.clear();
    LoggedCount = 0;
    PageCount = static_cast<std::int16_t>(s_.form.SSTab.tabCount());
    PageIndex = -1;
    showCounter();
    fill();
}

void frmLogWizard::showCounter()
{
    lblCounter.setCaption("Max = " + std::to_string(LoggedCount) + "/" + std::to_string(kWizardLimit));
}

int frmLogWizard::cellPageFile() const
{
    return PageIndex == -3 ? 12 : PageIndex == -2 ? 6 : 4;
}

void frmLogWizard::turnPage(int delta)
{
    const int level = s_.userLevel ? s_.userLevel() : 0;
    PageIndex = static_cast<std::int16_t>(PageIndex + delta);
    if (PageIndex < kFirstPage)
        PageIndex = kFirstPage;
    if (PageIndex == kFirstPage && level != kAdvancedLevel) {
        PageIndex = -2;
        return;
    }
    if (PageIndex >= PageCount) {
        PageIndex = static_cast<std::int16_t>(PageCount - 1);
        return;
    }
    if (PageIndex >= 0 && s_.form.SSTab.tabs()[static_cast<std::size_t>(PageIndex)].caption == "Advanced"
        && level != kAdvancedLevel) {
        PageIndex = static_cast<std::int16_t>(PageIndex - delta);
        return;
    }
    fill();
}

void frmLogWizard::fill()
{
    ListSource.clear();
    if (onCellPage()) {
        static constexpr std::array kCellPages { "Cell Advanced", "Cell History", "Cell Dynamic" };
        lblTab.setCaption(kCellPages[static_cast<std::size_t>(PageIndex + 3)]);
        const int file = cellPageFile();
        int cell = 0;
        for (const auto& node : s_.driver.nodes) {
            ++cell;
            for (const auto& parameter : node.NodeParameters) {
                if (parameter.FileNumber != file)
                    continue;
                const std::string key = wizardCellKey(parameter.ParameterName, cell);
                if (!ListDestination.row(key))
                    ListSource.addRow({ .key = key, .text = key, .subItems = { key } });
            }
        }
    } else {
        const auto page = static_cast<std::size_t>(PageIndex);
        lblTab.setCaption(s_.form.SSTab.tabs()[page].caption);
        if (page < s_.form.lvParameters.size()) {
            for (const auto& row : s_.form.lvParameters[page].rows()) {
                const std::string key = trimmed(row.text);
                if (!key.empty() && !ListDestination.row(key) && !ListSource.row(key))
                    ListSource.addRow({ .key = key, .text = key, .subItems = { key } });
            }
        }
    }
    stripe(ListSource);
    stripe(ListDestination);
}

bool frmLogWizard::moveToLogged(const std::string& key)
{
    const auto* row = key.empty() ? nullptr : ListSource.row(key);
    if (LoggedCount >= kWizardLimit || !row)
        return false;
    for (const auto& logged : ListDestination.rows())
        if (logged.text == row->text)
            return false;
    const platform::ui::ListRow moved { .key = key, .text = row->text, .subItems = { key } };
    ListDestination.addRow(moved);
    ListSource.removeRow(key);
    ++LoggedCount;
    showCounter();
    stripe(ListSource);
    stripe(ListDestination);
    return true;
}

bool frmLogWizard::belongsToPage(const std::string& key) const
{
    if (const auto cell = parseWizardCellKey(key)) {
        if (!onCellPage())
            return false;
        const auto* node = s_.driver.nodes.Item(cell->cell);
        const auto* parameter = node ? node->NodeParameters.FindByName(cell->name) : nullptr;
        return parameter && parameter->FileNumber == cellPageFile();
    }
    if (onCellPage())
        return false;
    for (const auto& row : s_.form.lvParameters[static_cast<std::size_t>(PageIndex)].rows())
        if (trimmed(row.text) == key)
            return true;
    return false;
}

void frmLogWizard::moveBack(const std::string& key)
{
    const auto* row = key.empty() ? nullptr : ListDestination.row(key);
    if (!row)
        return;
    const platform::ui::ListRow returned { .key = key, .text = row->text, .subItems = { key } };
    ListDestination.removeRow(key);
    --LoggedCount;
    showCounter();
    if (belongsToPage(key))
        ListSource.addRow(returned);
    stripe(ListSource);
    stripe(ListDestination);
}

std::string frmLogWizard::definitionText() const
{
    std::string text = wizardLine("Tick", 0, 0, "U");
    for (const auto& row : ListDestination.rows()) {
        const std::string& key = row.key;
        const clsSMBusParameter* parameter = nullptr;
        int element = 0;
        if (const auto cell = parseWizardCellKey(key)) {
            const auto* node = s_.driver.nodes.Item(cell->cell);
            parameter = node ? node->NodeParameters.FindByName(cell->name) : nullptr;
            if (parameter) {
                const int stride = parameter->FileNumber == 4 ? ParametersInFile4
                    : parameter->FileNumber == 6              ? ParametersInFile6
                                                              : ParametersInFile12;
                element = wizardElement(parameter->FileIndex, cell->cell, stride);
            }
        } else {
            parameter = s_.driver.GatewayParameters.FindByName(key);
            element = parameter ? parameter->FileIndex : 0;
        }
        if (!parameter)
            throw std::runtime_error("There is no parameter " + key);
        text += wizardLine(
            row.text, parameter->FileNumber, element, wizardTypeLetter(parameter->SubBlockDataType));
    }
    return text;
}

void frmLogWizard::generate()
{
    if (ListDestination.rowCount() == 0) {
        (void)s_.dialogs.messageBox("Please add at least one parameter to the 'Logged Parameters' list.",
            platform::Buttons::OK, platform::Icon::Information, kTitle);
        return;
    }
    platform::FileDialogOptions options;
    options.filter
        = "Dynamic Log Definition Files (*.dlog)|*.dlog|Static Log Definition Files (*.slog)|*.slog";
    options.folder = readSetting(s_.settings, "Path_Logging", s_.programFolder);
    const auto chosen = s_.dialogs.saveFile(options);
    if (!chosen)
        return;
    const std::filesystem::path target(*chosen);
    writeSetting(s_.settings, "Path_Logging", target.parent_path().string());
    try {
        writeFileReplacing(target.string(), definitionText());
    } catch (const std::exception& e) {
        (void)s_.dialogs.messageBox(
            std::string("Error 1: ") + e.what(), platform::Buttons::OK, platform::Icon::Critical, kTitle);
        return;
    }
    (void)s_.dialogs.messageBox("A new log definition file has been created.", platform::Buttons::OK,
        platform::Icon::Information, kTitle);
}

} // namespace zv
