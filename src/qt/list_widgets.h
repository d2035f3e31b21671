#pragma once
// Widget makers of the forms built in code: a widget named for its control, a report list, and
// a tab strip over a stack of lists.

#include "platform/ui/tab_strip.h"

#include <QString>
#include <QWidget>

#include <string>
#include <vector>

class QTreeWidget;

namespace zv::qt {

template <typename W> W* named(const std::string& name, QWidget* parent)
{
    auto* widget = new W(parent);
    widget->setObjectName(QString::fromStdString(name));
    return widget;
}

// A single-selection list with the pop-up menu left to its control.
[[nodiscard]] QTreeWidget* reportList(const std::string& name, QWidget* parent);

// A tab strip over a stack of lists; the stack shows the list of the chosen tab.
[[nodiscard]] QWidget* tabbedLists(
    const std::string& stripName, const std::vector<std::string>& listNames, QWidget* parent);

template <typename Lists>
[[nodiscard]] QWidget* tabbedLists(const platform::ui::TabStrip& strip, const Lists& lists, QWidget* parent)
{
    std::vector<std::string> names;
    for (const auto& list : lists)
        names.push_back(list.name());
    return tabbedLists(strip.name(), names, parent);
}

} // namespace zv::qt
