#include "access/menu_policy.h"

#include "core/globals.h"
#include "platform/text.h"
#include "platform/ui/window.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace zv {

namespace {

const std::array<std::string, 3> kTargets { "1001", "1002", "1003" };

// Visibility by level 0 to 3; onlyOn names the one target where the open levels apply.
struct RowClass {
    std::array<bool, 4> levels;
    std::string_view onlyOn;
};

constexpr RowClass kAlways { { true, true, true, true }, {} };
constexpr RowClass kOpen { { false, false, true, true }, {} };
constexpr RowClass kTop { { false, false, false, true }, {} };
constexpr RowClass kTarget1001 { { false, false, true, true }, "1001" };
constexpr RowClass kNever { { false, false, false, false }, {} };

clsMenu row(const std::string& name, const RowClass& rowClass)
{
    clsMenu menu;
    menu.menuName = name;
    for (const auto& target : kTargets) {
        const bool here = rowClass.onlyOn.empty() || rowClass.onlyOn == target;
        menu.menuDevice.push_back(target);
        menu.menuLevel0.push_back(here && rowClass.levels[0]);
        menu.menuLevel1.push_back(here && rowClass.levels[1]);
        menu.menuLevel2.push_back(here && rowClass.levels[2]);
        menu.menuLevel3.push_back(here && rowClass.levels[3]);
    }
    return menu;
}

void addRows(clsMenuCol& policy, const RowClass& rowClass, std::initializer_list<const char*> names)
{
    for (const char* name : names)
        policy.Add(row(name, rowClass));
}

const std::vector<bool>* levelColumn(const clsMenu& menu, int level)
{
    switch (level) {
    case 0:
        return &menu.menuLevel0;
    case 1:
        return &menu.menuLevel1;
    case 2:
        return &menu.menuLevel2;
    case 3:
        return &menu.menuLevel3;
    default:
        return nullptr;
    }
}

} // namespace

bool clsMenuCol::IsVisible(std::string_view name, std::string_view device, int level) const
{
    const clsMenu* menu
        = findIf([&](const clsMenu& m) { return platform::equalsIgnoreCase(m.menuName, name); });
    const std::vector<bool>* column = menu ? levelColumn(*menu, level) : nullptr;
    if (!column)
        return false;
    const auto at = std::find(menu->menuDevice.begin(), menu->menuDevice.end(), device);
    const auto index = static_cast<std::size_t>(at - menu->menuDevice.begin());
    return at != menu->menuDevice.end() && index < column->size() && (*column)[index];
}

clsMenuCol BuildMenuPolicy()
{
    clsMenuCol policy;
    addRows(policy, kAlways,
        { "mnuApplicationSettings", "mnuLoadSeperator", "mnuSep2", "mnuSep10", "mnuConnect", "mnutoggleSep",
            "mnuPollAllContinuously", "mnuStopPolling", "mnuResetPolling", "mnuSep6", "mnuPollAllOnce",
            "mnuReadAllNodes", "mnuWritePendingChanges", "mnuCommit", "mnuConfigure", "mnuBootstrapLoader",
            "mnuSMBReadWrite", "mnuSmbusAddress", "mnuSepAddons", "mnuAddOns" });
    addRows(policy, kOpen,
        { "mnuCalibrationData", "mnuLoadSeperator2", "mnuPackConfiguration", "mnuPPsep2", "mnuDataSet",
            "mnusepAdvanced1", "mnuLoadChemistryData", "mnuVerifyChemistryData", "mnusep1", "mnuAccessLevel",
            "mnuSavePackInfo", "mnulogging", "mnuSafeDisconnect", "mnuInitialize", "mnuRelearn",
            "mnuResetFuse", "mnuToggleSM", "mnuToggleWired", "mnuPollSeperator", "mnuViewSafetyHistory",
            "mnuPollSeperator2", "mnuCalibration" });
    addRows(policy, kTop, { "mnuView" });
    addRows(
        policy, kTarget1001, { "mnuToggleConfigure", "mnuViewTemperatureHistory", "mnuViewVoltageHistory" });
    addRows(policy, kNever, { "mnuChangeUserAccessLevel", "mnuRebuildLAN", "mnuReadSelectedNode" });
    return policy;
}

MenuPolicyContext menuPolicyContext(const AppGlobals& globals, std::function<int()> level)
{
    return { globals.gTargetID, std::move(level), globals.settings.AutoLogging, globals.usbTransport(),
        globals.gAccessMenuEnabled };
}

bool setControlVisible(platform::ui::Window& window, std::string_view name, bool visible)
{
    const auto& controls = window.controls();
    const auto found = std::find_if(controls.begin(), controls.end(),
        [&](const platform::ui::Control* c) { return platform::equalsIgnoreCase(c->name(), name); });
    if (found == controls.end())
        return false;
    (*found)->setVisible(visible);
    return true;
}

void ApplyMenuPolicy(
    platform::ui::Window& mainWindow, const clsMenuCol& policy, const MenuPolicyContext& context)
{
    for (const clsMenu& menu : policy) {
        const int level = context.userAccessLevel ? context.userAccessLevel() : -1;
        setControlVisible(
            mainWindow, menu.menuName, policy.IsVisible(menu.menuName, context.gTargetID, level));
    }
    for (const char* name : { "mnuStartLogging", "mnuStopLogging", "mnuloogingsep1" })
        setControlVisible(mainWindow, name, !context.autoLogging);
    if (context.usbTransport)
        setControlVisible(mainWindow, "mnuConfigure", false);
    if (context.gTargetID == "1001" || context.gTargetID == "1002" || context.gTargetID == "1003") {
        const bool configBit = context.gTargetID == "1001";
        setControlVisible(mainWindow, "lblCONFIG_BIT", configBit);
        setControlVisible(mainWindow, kConfigBitMarker, configBit);
    }
    if (context.gTargetID == "1003" && context.gAccessMenuEnabled)
        setControlVisible(mainWindow, "mnuChangeUserAccessLevel", true);
}

} // namespace zv
