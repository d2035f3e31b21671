#pragma once
// The menu policy: which entry of the main menu is visible on which target at which access
// level. The table is built once at start-up and applied every time the level is read.

#include "params/keyed_list.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zv::platform::ui {
class Window;
}

namespace zv {

struct AppGlobals;

// One row of the policy: a menu entry's visibility by target and level.
class clsMenu {
public:
    std::string menuName;
    std::vector<std::string> menuDevice; // target ids the row knows
    // Parallel to menuDevice: visible at level 0, 1, 2, 3 on that target.
    std::vector<bool> menuLevel0;
    std::vector<bool> menuLevel1;
    std::vector<bool> menuLevel2;
    std::vector<bool> menuLevel3;
};

// The rows keyed by menu name (keys compare without regard to case).
class clsMenuCol : public KeyedList<clsMenu> {
public:
    clsMenu& Add(clsMenu row)
    {
        const std::string key = row.menuName;
        return Append(std::move(row), key);
    }
    // The first row whose name matches (without regard to case), at the first entry of its
    // targets equal to device, at level 0 to 3. Anything else is false.
    [[nodiscard]] bool IsVisible(std::string_view name, std::string_view device, int level) const;
};

// The 49 rows, in table order.
[[nodiscard]] clsMenuCol BuildMenuPolicy();

// The control drawn beside lblCONFIG_BIT, shown and hidden with it.
inline constexpr const char* kConfigBitMarker = "shpCONFIG_BIT";

// What UpdateMenus needs to know besides the table.
struct MenuPolicyContext {
    std::string gTargetID;
    std::function<int()> userAccessLevel; // read anew for every entry
    bool autoLogging = false; // the setting "AutoLogging"
    bool usbTransport = false;
    bool gAccessMenuEnabled = false;
};

// The context from the application's globals, the level read through level.
[[nodiscard]] MenuPolicyContext menuPolicyContext(const AppGlobals& globals, std::function<int()> level);

// UpdateMenus: sets the visibility of the 49 entries by the table, then the logging entries,
// mnuConfigure on the USB transport, lblCONFIG_BIT by target and mnuChangeUserAccessLevel on
// target "1003" with gAccessMenuEnabled. Controls are found by name without regard to case;
// a name the window does not have is passed over.
void ApplyMenuPolicy(
    platform::ui::Window& mainWindow, const clsMenuCol& policy, const MenuPolicyContext& context);

// Shows or hides the control of that name (any case); false when the window has none.
bool setControlVisible(platform::ui::Window& window, std::string_view name, bool visible);

} // namespace zv
