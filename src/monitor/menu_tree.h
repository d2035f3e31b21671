#pragma once
// The shape of a menu: entries in order, each with the entries of its sub-menu. A separator is an
// entry whose caption is "-". The front end builds its menus from this tree.

#include "platform/ui/simple_controls.h"

#include <functional>
#include <string_view>
#include <vector>

namespace zv {

inline constexpr std::string_view kSeparatorCaption = "-";

struct MenuNode {
    platform::ui::MenuItem* item = nullptr;
    std::vector<MenuNode> children;

    [[nodiscard]] bool isSeparator() const { return item->caption() == kSeparatorCaption; }
    [[nodiscard]] bool isSubMenu() const { return !children.empty(); }
};

// Every node of the trees, parents before their children, in menu order.
void forEachMenuNode(const std::vector<MenuNode>& nodes, const std::function<void(const MenuNode&)>& visit);

} // namespace zv
