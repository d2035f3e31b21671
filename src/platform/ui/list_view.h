#pragma once
// A report-style list with keyed rows: icon, sub-items, bold text, colour and a check box.
// Rows keep their insertion order; every setter updates one row in place and reports only a
// real change, so a poll that rewrites the same values costs the binder nothing.

#include "platform/ui/control.h"

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace zv::platform::ui {

struct ListColumn {
    std::string header;
    int widthTwips = 1440;
    std::string icon; // key of an image beside the title, empty for none
};

// The look of one sub-item where it differs from its row: an icon, a text colour, bold.
struct SubItemStyle {
    std::string icon;
    std::optional<Rgb> foreColor;
    std::optional<bool> bold; // none: as its row
    bool operator==(const SubItemStyle&) const = default;
};

struct ListRow {
    std::string key;
    std::string text;
    std::string icon; // key of an image, empty for none
    std::vector<std::string> subItems; // columns 1, 2, ... (column 0 is text)
    std::vector<SubItemStyle> subStyles; // by sub-item column, like subItems
    bool bold = false;
    std::optional<Rgb> foreColor;
    std::optional<Rgb> backColor;
    bool checked = false;
};

class ListView : public Control {
public:
    using Control::Control;

    void setColumns(std::vector<ListColumn> columns);
    [[nodiscard]] const std::vector<ListColumn>& columns() const { return columns_; }
    [[nodiscard]] bool checkBoxes() const { return checkBoxes_; }
    void setCheckBoxes(bool on) { assign(checkBoxes_, on, Change::Columns); }

    // Adds a row at the end; throws std::invalid_argument when the key is already used.
    void addRow(ListRow row);
    void removeRow(const std::string& key);
    void clear();

    [[nodiscard]] int rowCount() const { return static_cast<int>(rows_.size()); }
    [[nodiscard]] const std::vector<ListRow>& rows() const { return rows_; }
    // The row with this key, or nullptr.
    [[nodiscard]] const ListRow* row(const std::string& key) const;

    // Each setter throws std::out_of_range for an unknown key. Sub-item columns count from 1.
    void setText(const std::string& key, const std::string& text);
    void setSubItem(const std::string& key, int column, const std::string& text);
    void setSubItemStyle(const std::string& key, int column, const SubItemStyle& style);
    void setIcon(const std::string& key, const std::string& icon);
    void setBold(const std::string& key, bool bold);
    void setForeColor(const std::string& key, std::optional<Rgb> color);
    void setBackColor(const std::string& key, std::optional<Rgb> color);
    void setChecked(const std::string& key, bool checked);

    // The selected row with the focus (with several selected, the last one chosen); empty for none.
    [[nodiscard]] const std::string& selectedKey() const { return selectedKey_; }
    // Selects this row alone (none for an unknown or empty key).
    void setSelectedKey(const std::string& key);
    // A list that lets several rows be selected at once; others keep at most one.
    [[nodiscard]] bool multiSelect() const { return multiSelect_; }
    void setMultiSelect(bool on);
    // Every selected row, in row order.
    [[nodiscard]] const std::vector<std::string>& selectedKeys() const { return selectedKeys_; }
    [[nodiscard]] bool isSelected(const std::string& key) const;
    // Selects every row of a multi-select list; the focus stays, or goes to the last row.
    void selectAll();

    // User actions: select a row, double-click it, tick its check box, click a column header,
    // release a mouse button.
    void userSelect(const std::string& key);
    // The user extended or narrowed the selection of a multi-select list (no click event).
    void userSetSelection(const std::vector<std::string>& keys);
    void userDoubleClick(const std::string& key);
    void userCheck(const std::string& key, bool checked);
    void userColumnClick(int column);
    // A mouse button released over a row (the key; empty over no row).
    void userMouseUp(const std::string& key, bool rightButton);
    std::function<void(const std::string& key)> onItemClick;
    std::function<void(const std::string& key)> onDblClick;
    std::function<void(const std::string& key, bool checked)> onItemCheck;
    std::function<void(int column)> onColumnClick;
    std::function<void(const std::string& key, bool rightButton)> onMouseUp;

private:
    ListRow& rowAt(const std::string& key);
    template <typename T>
    void updateSlot(const std::string& key, int column, std::vector<T> ListRow::*field, const T& value);
    template <typename T> void update(const std::string& key, T ListRow::*field, const T& value);
    void reindex();
    // Keeps the selected rows that still exist, in row order, and a focus among them.
    void keepSelection(std::vector<std::string> keys, std::string focus);

    std::vector<ListColumn> columns_;
    std::vector<ListRow> rows_;
    std::unordered_map<std::string, std::size_t> index_;
    std::string selectedKey_;
    std::vector<std::string> selectedKeys_;
    bool multiSelect_ = false;
    bool checkBoxes_ = false;
};

} // namespace zv::platform::ui
