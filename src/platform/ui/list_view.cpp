#include "platform/ui/list_view.h"

#include <algorithm>
#include <stdexcept>

namespace zv::platform::ui {

void ListView::setColumns(std::vector<ListColumn> columns)
{
    columns_ = std::move(columns);
    notify(Change::Columns);
}

void ListView::addRow(ListRow row)
{
    if (index_.count(row.key))
        throw std::invalid_argument(name() + ": key is not unique: " + row.key);
    index_.emplace(row.key, rows_.size());
    std::string key = row.key;
    rows_.push_back(std::move(row));
    notify(Change::RowAdded, std::move(key));
}

void ListView::removeRow(const std::string& key)
{
    const auto it = index_.find(key);
    if (it == index_.end())
        return;
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(it->second));
    reindex();
    keepSelection(selectedKeys_, selectedKey_);
    notify(Change::RowRemoved, key);
}

void ListView::clear()
{
    rows_.clear();
    index_.clear();
    selectedKey_.clear();
    selectedKeys_.clear();
    notify(Change::Rows);
}

void ListView::reindex()
{
    index_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i)
        index_.emplace(rows_[i].key, i);
}

const ListRow* ListView::row(const std::string& key) const
{
    const auto it = index_.find(key);
    return it == index_.end() ? nullptr : &rows_[it->second];
}

ListRow& ListView::rowAt(const std::string& key)
{
    const auto it = index_.find(key);
    if (it == index_.end())
        throw std::out_of_range(name() + ": no row with key " + key);
    return rows_[it->second];
}

template <typename T> void ListView::update(const std::string& key, T ListRow::*field, const T& value)
{
    ListRow& target = rowAt(key);
    if (target.*field == value)
        return;
    target.*field = value;
    notify(Change::RowChanged, key);
}

void ListView::setText(const std::string& key, const std::string& text)
{
    update(key, &ListRow::text, text);
}
void ListView::setIcon(const std::string& key, const std::string& icon)
{
    update(key, &ListRow::icon, icon);
}
void ListView::setBold(const std::string& key, bool bold)
{
    update(key, &ListRow::bold, bold);
}
void ListView::setForeColor(const std::string& key, std::optional<Rgb> color)
{
    update(key, &ListRow::foreColor, color);
}
void ListView::setBackColor(const std::string& key, std::optional<Rgb> color)
{
    update(key, &ListRow::backColor, color);
}
void ListView::setChecked(const std::string& key, bool checked)
{
    update(key, &ListRow::checked, checked);
}

template <typename T>
void ListView::updateSlot(const std::string& key, int column, std::vector<T> ListRow::*field, const T& value)
{
    if (column < 1)
        throw std::out_of_range(name() + ": sub-items count from 1");
    std::vector<T>& slots = rowAt(key).*field;
    const auto slot = static_cast<std::size_t>(column - 1);
    if (slot < slots.size() && slots[slot] == value)
        return;
    if (slot >= slots.size())
        slots.resize(slot + 1);
    slots[slot] = value;
    notify(Change::RowChanged, key);
}

void ListView::setSubItem(const std::string& key, int column, const std::string& text)
{
    updateSlot(key, column, &ListRow::subItems, text);
}

void ListView::setSubItemStyle(const std::string& key, int column, const SubItemStyle& style)
{
    updateSlot(key, column, &ListRow::subStyles, style);
}

void ListView::keepSelection(std::vector<std::string> keys, std::string focus)
{
    std::vector<std::size_t> positions;
    for (const auto& key : keys)
        if (const auto it = index_.find(key); it != index_.end())
            positions.push_back(it->second);
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
    selectedKeys_.clear();
    for (const std::size_t position : positions)
        selectedKeys_.push_back(rows_[position].key);
    if (!isSelected(focus))
        focus = selectedKeys_.empty() ? std::string() : selectedKeys_.back();
    selectedKey_ = std::move(focus);
}

void ListView::setSelectedKey(const std::string& key)
{
    const auto before = selectedKeys_;
    keepSelection({ key }, key);
    if (selectedKeys_ != before)
        notify(Change::Selection);
}

void ListView::setMultiSelect(bool on)
{
    multiSelect_ = on;
    if (!on && selectedKeys_.size() > 1)
        setSelectedKey(selectedKey_);
    notify(Change::Selection);
}

bool ListView::isSelected(const std::string& key) const
{
    return std::find(selectedKeys_.begin(), selectedKeys_.end(), key) != selectedKeys_.end();
}

void ListView::selectAll()
{
    if (!multiSelect_ || rows_.empty())
        return;
    std::vector<std::string> keys;
    for (const auto& each : rows_)
        keys.push_back(each.key);
    keepSelection(std::move(keys), selectedKey_);
    notify(Change::Selection);
}

void ListView::userSetSelection(const std::vector<std::string>& keys)
{
    if (!usable())
        return;
    if (!multiSelect_ && keys.size() > 1)
        return;
    keepSelection(keys, selectedKey_);
}

void ListView::userSelect(const std::string& key)
{
    if (!usable() || !index_.count(key))
        return;
    keepSelection({ key }, key);
    if (onItemClick)
        onItemClick(key);
}

void ListView::userDoubleClick(const std::string& key)
{
    userSelect(key);
    if (selectedKey_ == key && usable() && onDblClick)
        onDblClick(key);
}

void ListView::userCheck(const std::string& key, bool checked)
{
    if (!usable() || !index_.count(key))
        return;
    rowAt(key).checked = checked;
    if (onItemCheck)
        onItemCheck(key, checked);
}

void ListView::userMouseUp(const std::string& key, bool rightButton)
{
    if (usable() && onMouseUp)
        onMouseUp(index_.count(key) ? key : std::string(), rightButton);
}

void ListView::userColumnClick(int column)
{
    if (usable() && onColumnClick)
        onColumnClick(column);
}

} // namespace zv::platform::ui
