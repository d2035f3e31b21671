#include "platform/ui/choice_controls.h"

namespace zv::platform::ui {

void ItemList::addItem(std::string item)
{
    items_.push_back(std::move(item));
    notify(Change::Items);
}

void ItemList::setItems(std::vector<std::string> items)
{
    items_ = std::move(items);
    listIndex_ = -1;
    notify(Change::Items);
}

void ItemList::clear()
{
    setItems({});
}

void ItemList::setListIndex(int index)
{
    if (index < 0 || index >= listCount())
        index = -1;
    assign(listIndex_, index, Change::Selection);
}

std::string ItemList::selectedText() const
{
    return listIndex_ < 0 ? std::string() : items_[listIndex_];
}

void ItemList::userSelect(int index)
{
    if (!usable() || index < 0 || index >= listCount())
        return;
    listIndex_ = index;
    if (onClick)
        onClick();
}

void ListBox::userDoubleClick(int index)
{
    userSelect(index);
    if (listIndex() == index && onDblClick)
        onDblClick();
}

} // namespace zv::platform::ui
