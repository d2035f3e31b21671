#pragma once
// Controls that offer a choice among texts: option groups, combo boxes and list boxes.

#include "platform/ui/control.h"

#include <functional>
#include <string>
#include <vector>

namespace zv::platform::ui {

// A list of texts with one selected index (-1: none).
class ItemList : public Control {
public:
    using Control::Control;
    [[nodiscard]] const std::vector<std::string>& items() const { return items_; }
    [[nodiscard]] int listCount() const { return static_cast<int>(items_.size()); }
    void addItem(std::string item);
    void setItems(std::vector<std::string> items);
    void clear();

    [[nodiscard]] int listIndex() const { return listIndex_; }
    // An index outside the list selects nothing.
    void setListIndex(int index);
    // The selected text, or empty.
    [[nodiscard]] std::string selectedText() const;

    // The user picked an entry: the selection changes and onClick fires.
    void userSelect(int index);
    std::function<void()> onClick;

private:
    std::vector<std::string> items_;
    int listIndex_ = -1;
};

// Option buttons that exclude each other; each item is the caption of one button.
class OptionGroup : public ItemList {
public:
    using ItemList::ItemList;
};

class ComboBox : public ItemList {
public:
    using ItemList::ItemList;
};

class ListBox : public ItemList {
public:
    using ItemList::ItemList;
    void userDoubleClick(int index);
    std::function<void()> onDblClick;
};

} // namespace zv::platform::ui
