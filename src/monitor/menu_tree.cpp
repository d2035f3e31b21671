#include "monitor/menu_tree.h"

namespace zv {

void forEachMenuNode(const std::vector<MenuNode>& nodes, const std::function<void(const MenuNode&)>& visit)
{
    for (const MenuNode& node : nodes) {
        visit(node);
        forEachMenuNode(node.children, visit);
    }
}

} // namespace zv
