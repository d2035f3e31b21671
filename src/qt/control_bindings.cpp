#include "qt/control_bindings.h"

#include "platform/ui/chart.h"
#include "platform/ui/choice_controls.h"
#include "platform/ui/list_view.h"
#include "platform/ui/rich_text_box.h"
#include "platform/ui/simple_controls.h"
#include "platform/ui/status_bar.h"
#include "platform/ui/tab_strip.h"
#include "platform/ui/twips.h"
#include "qt/chart_binding.h"
#include "qt/qt_colors.h"
#include "qt/status_panel_label.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTabBar>
#include <QTextEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <unordered_map>

namespace zv::qt {

namespace ui = platform::ui;

namespace {

QString qs(const std::string& s)
{
    return QString::fromStdString(s);
}

// Applies a change with the applying flag set.
template <typename Fn> void applying(const BindContext& context, Fn&& fn)
{
    ApplyingGuard guard(*context.applying);
    fn();
}

// The common properties: visible, enabled and geometry (only for widgets not in a layout).
void applyCommon(const ui::Control& control, QWidget& widget, ui::Change what)
{
    if (what == ui::Change::Visible)
        widget.setVisible(control.visible());
    else if (what == ui::Change::Enabled)
        widget.setEnabled(control.enabled());
    else if (what == ui::Change::Geometry && !(widget.parentWidget() && widget.parentWidget()->layout())) {
        const auto& b = control.bounds();
        widget.setGeometry(ui::twipsToPixels(b.left), ui::twipsToPixels(b.top), ui::twipsToPixels(b.width),
            ui::twipsToPixels(b.height));
    }
}

void initCommon(const ui::Control& control, QWidget& widget)
{
    widget.setEnabled(control.enabled());
    if (!control.visible())
        widget.setVisible(false);
    if (control.bounds().width > 0)
        applyCommon(control, widget, ui::Change::Geometry);
}

// Installs the listener: initial state at once, then every change.
template <typename C, typename W, typename Sync>
void mirror(C& control, W& widget, const BindContext& context, Sync sync)
{
    QPointer<W> target(&widget);
    auto flag = context.applying;
    const auto apply = [&control, target, flag, sync](ui::Change what, const std::string& detail) {
        if (!target)
            return;
        ApplyingGuard guard(*flag);
        if constexpr (std::is_base_of_v<QWidget, W>)
            applyCommon(control, *target, what);
        sync(control, *target, what, detail);
    };
    applying(context, [&] {
        if constexpr (std::is_base_of_v<QWidget, W>)
            initCommon(control, widget);
        sync(control, widget, ui::Change::Rows, std::string());
    });
    control.setChangeListener([apply](const ui::ChangeEvent& e) { apply(e.what, e.detail); });
}

template <typename Sender, typename Signal, typename Slot>
void onUser(const BindContext& context, Sender* sender, Signal signal, Slot slot)
{
    auto flag = context.applying;
    context.connections.push_back(QObject::connect(sender, signal, sender, [flag, slot](auto&&... args) {
        if (!*flag)
            slot(std::forward<decltype(args)>(args)...);
    }));
}

// Initial sync passes Change::Rows: "everything".
bool all(ui::Change what, ui::Change mine)
{
    return what == ui::Change::Rows || what == mine;
}

bool bindLabel(ui::Label& label, QLabel& widget, const BindContext& context)
{
    mirror(label, widget, context, [](ui::Label& c, QLabel& w, ui::Change what, const std::string&) {
        if (all(what, ui::Change::Caption))
            w.setText(qs(c.caption()));
        if (all(what, ui::Change::ForeColor) && c.foreColor()) {
            QPalette palette = w.palette();
            palette.setColor(QPalette::WindowText, toQColor(*c.foreColor()));
            w.setPalette(palette);
        }
    });
    return true;
}

bool bindTextBox(ui::TextBox& box, QObject& target, const BindContext& context)
{
    if (auto* line = qobject_cast<QLineEdit*>(&target)) {
        mirror(box, *line, context, [](ui::TextBox& c, QLineEdit& w, ui::Change what, const std::string&) {
            if (all(what, ui::Change::Text) && w.text() != qs(c.text()))
                w.setText(qs(c.text()));
            w.setReadOnly(c.locked());
        });
        onUser(context, line, &QLineEdit::textEdited,
            [&box](const QString& text) { box.userEdit(text.toStdString()); });
        return true;
    }
    if (auto* plain = qobject_cast<QPlainTextEdit*>(&target)) {
        mirror(
            box, *plain, context, [](ui::TextBox& c, QPlainTextEdit& w, ui::Change what, const std::string&) {
                if (all(what, ui::Change::Text))
                    w.setPlainText(qs(c.text()));
                w.setReadOnly(c.locked());
            });
        QPointer<QPlainTextEdit> source(plain);
        onUser(context, plain, &QPlainTextEdit::textChanged, [&box, source] {
            if (source)
                box.userEdit(source->toPlainText().toStdString());
        });
        return true;
    }
    return false;
}

bool bindButton(ui::Button& button, QAbstractButton& widget, const BindContext& context)
{
    mirror(
        button, widget, context, [](ui::Button& c, QAbstractButton& w, ui::Change what, const std::string&) {
            if (all(what, ui::Change::Caption)) {
                w.setText(qs(c.caption()));
                w.setToolTip(qs(c.toolTip()));
            }
        });
    onUser(context, &widget, &QAbstractButton::clicked, [&button](bool) { button.click(); });
    return true;
}

bool bindCheckBox(ui::CheckBox& box, QCheckBox& widget, const BindContext& context)
{
    mirror(box, widget, context, [](ui::CheckBox& c, QCheckBox& w, ui::Change what, const std::string&) {
        if (all(what, ui::Change::Caption))
            w.setText(qs(c.caption()));
        if (all(what, ui::Change::Value)) {
            w.setTristate(c.value() == ui::CheckBox::Grayed);
            w.setCheckState(c.value() == ui::CheckBox::Checked ? Qt::Checked
                    : c.value() == ui::CheckBox::Grayed        ? Qt::PartiallyChecked
                                                               : Qt::Unchecked);
        }
    });
    onUser(context, &widget, &QAbstractButton::clicked, [&box](bool) { box.userClick(); });
    return true;
}

bool bindMenuItem(ui::MenuItem& item, QAction& action, const BindContext& context)
{
    mirror(item, action, context, [](ui::MenuItem& c, QAction& a, ui::Change what, const std::string&) {
        if (all(what, ui::Change::Caption) && !c.caption().empty() && !a.isSeparator())
            a.setText(qs(c.caption()));
        a.setVisible(c.visible());
        a.setEnabled(c.enabled());
        if (c.checked())
            a.setCheckable(true);
        a.setChecked(c.checked());
    });
    onUser(context, &action, &QAction::triggered, [&item](bool) { item.click(); });
    return true;
}

bool bindTrayIcon(ui::TrayIcon& icon, QSystemTrayIcon& tray, const BindContext& context)
{
    mirror(icon, tray, context, [](ui::TrayIcon& c, QSystemTrayIcon& w, ui::Change, const std::string&) {
        w.setToolTip(qs(c.toolTip()));
        w.setVisible(c.visible());
    });
    return true;
}

bool bindItemList(ui::ItemList& list, QObject& target, const BindContext& context)
{
    const auto items = [](const ui::ItemList& c) {
        QStringList texts;
        for (const auto& item : c.items())
            texts << qs(item);
        return texts;
    };
    if (auto* combo = qobject_cast<QComboBox*>(&target)) {
        mirror(list, *combo, context,
            [items](ui::ItemList& c, QComboBox& w, ui::Change what, const std::string&) {
                if (all(what, ui::Change::Items)) {
                    w.clear();
                    w.addItems(items(c));
                }
                w.setCurrentIndex(c.listIndex());
            });
        onUser(context, combo, &QComboBox::activated, [&list](int index) { list.userSelect(index); });
        return true;
    }
    if (auto* widget = qobject_cast<QListWidget*>(&target)) {
        mirror(list, *widget, context,
            [items](ui::ItemList& c, QListWidget& w, ui::Change what, const std::string&) {
                if (all(what, ui::Change::Items)) {
                    w.clear();
                    w.addItems(items(c));
                }
                w.setCurrentRow(c.listIndex());
            });
        QPointer<QListWidget> source(widget);
        onUser(context, widget, &QListWidget::itemClicked, [&list, source](QListWidgetItem* item) {
            if (source)
                list.userSelect(source->row(item));
        });
        if (auto* box = dynamic_cast<ui::ListBox*>(&list)) {
            onUser(context, widget, &QListWidget::itemDoubleClicked, [box, source](QListWidgetItem* item) {
                if (source)
                    box->userDoubleClick(source->row(item));
            });
        }
        return true;
    }
    auto* container = qobject_cast<QWidget*>(&target);
    if (!container || !dynamic_cast<ui::OptionGroup*>(&list))
        return false;
    // An option group: one radio button an item, rebuilt when the items change.
    auto* group = new QButtonGroup(container);
    if (!container->layout())
        new QVBoxLayout(container);
    mirror(list, *container, context,
        [items, group](ui::ItemList& c, QWidget& w, ui::Change what, const std::string&) {
            if (all(what, ui::Change::Items)) {
                for (auto* button : group->buttons())
                    delete button;
                int id = 0;
                for (const auto& text : items(c)) {
                    auto* radio = new QRadioButton(text, &w);
                    group->addButton(radio, id++);
                    w.layout()->addWidget(radio);
                }
            }
            if (auto* checked = group->button(c.listIndex()))
                checked->setChecked(true);
        });
    onUser(context, group, &QButtonGroup::idClicked, [&list](int id) { list.userSelect(id); });
    return true;
}

using IconProvider = std::function<QIcon(const std::string&)>;

void fillRow(QTreeWidgetItem& item, const ui::ListRow& row, const IconProvider* icons, bool checkBoxes)
{
    item.setText(0, qs(row.text));
    for (std::size_t i = 0; i < row.subItems.size(); ++i)
        item.setText(static_cast<int>(i) + 1, qs(row.subItems[i]));
    if (*icons)
        item.setIcon(0, row.icon.empty() ? QIcon() : (*icons)(row.icon));
    for (int column = 0; column < std::max(1, item.columnCount()); ++column) {
        QFont font = item.font(column);
        font.setBold(row.bold);
        item.setFont(column, font);
        item.setForeground(column, row.foreColor ? QBrush(toQColor(*row.foreColor)) : QBrush());
        item.setBackground(column, row.backColor ? QBrush(toQColor(*row.backColor)) : QBrush());
    }
    for (std::size_t i = 0; i < row.subStyles.size(); ++i) {
        const auto column = static_cast<int>(i) + 1;
        const ui::SubItemStyle& style = row.subStyles[i];
        if (*icons)
            item.setIcon(column, style.icon.empty() ? QIcon() : (*icons)(style.icon));
        if (style.foreColor)
            item.setForeground(column, QBrush(toQColor(*style.foreColor)));
        if (style.bold) {
            QFont font = item.font(column);
            font.setBold(*style.bold);
            item.setFont(column, font);
        }
    }
    if (checkBoxes)
        item.setCheckState(0, row.checked ? Qt::Checked : Qt::Unchecked);
    item.setData(0, Qt::UserRole, qs(row.key));
}

// The control's selection on the tree: every selected row, the focus on the control's key.
void showSelection(
    const ui::ListView& c, QTreeWidget& w, const std::unordered_map<std::string, QTreeWidgetItem*>& items)
{
    w.setSelectionMode(
        c.multiSelect() ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
    w.clearSelection();
    for (const auto& key : c.selectedKeys())
        if (const auto it = items.find(key); it != items.end())
            it->second->setSelected(true);
    const auto focus = items.find(c.selectedKey());
    w.setCurrentItem(focus == items.end() ? nullptr : focus->second, 0, QItemSelectionModel::NoUpdate);
}

bool bindListView(ui::ListView& view, QTreeWidget& tree, const BindContext& context)
{
    auto items = std::make_shared<std::unordered_map<std::string, QTreeWidgetItem*>>();
    tree.setRootIsDecorated(false);
    const IconProvider* icons = &context.icons;
    const auto addRow = [items, icons](QTreeWidget& w, const ui::ListView& c, const ui::ListRow& row) {
        auto* item = new QTreeWidgetItem(&w);
        fillRow(*item, row, icons, c.checkBoxes());
        (*items)[row.key] = item;
    };
    mirror(view, tree, context,
        [items, addRow, icons](ui::ListView& c, QTreeWidget& w, ui::Change what, const std::string& key) {
            if (what == ui::Change::Columns || what == ui::Change::Rows) {
                QStringList headers;
                for (const auto& column : c.columns())
                    headers << qs(column.header);
                w.setHeaderLabels(headers);
                for (int i = 0; i < static_cast<int>(c.columns().size()); ++i) {
                    const ui::ListColumn& column = c.columns()[static_cast<std::size_t>(i)];
                    w.setColumnWidth(i, ui::twipsToPixels(column.widthTwips));
                    if (*icons)
                        w.headerItem()->setIcon(i, column.icon.empty() ? QIcon() : (*icons)(column.icon));
                }
            }
            if (what == ui::Change::Rows) {
                w.clear();
                items->clear();
                for (const auto& row : c.rows())
                    addRow(w, c, row);
            } else if (what == ui::Change::RowAdded) {
                addRow(w, c, *c.row(key));
            } else if (what == ui::Change::RowChanged) {
                fillRow(*items->at(key), *c.row(key), icons, c.checkBoxes());
            } else if (what == ui::Change::RowRemoved) {
                delete items->at(key);
                items->erase(key);
            }
            if (what == ui::Change::Selection || what == ui::Change::Rows)
                showSelection(c, w, *items);
        });
    const auto keyOf
        = [](QTreeWidgetItem* item) { return item->data(0, Qt::UserRole).toString().toStdString(); };
    onUser(context, &tree, &QTreeWidget::itemClicked, [&view, keyOf](QTreeWidgetItem* item, int) {
        view.userSelect(keyOf(item));
        view.userMouseUp(keyOf(item), false);
    });
    onUser(context, &tree, &QTreeWidget::itemSelectionChanged, [&view, &tree, keyOf] {
        std::vector<std::string> keys;
        for (QTreeWidgetItem* item : tree.selectedItems())
            keys.push_back(keyOf(item));
        view.userSetSelection(keys);
    });
    onUser(context, &tree, &QWidget::customContextMenuRequested, [&view, &tree, keyOf](const QPoint& at) {
        QTreeWidgetItem* item = tree.itemAt(at);
        // A right click inside a selection of several rows keeps it for the menu of that selection.
        if (item && !(view.selectedKeys().size() > 1 && view.isSelected(keyOf(item))))
            view.userSelect(keyOf(item));
        view.userMouseUp(item ? keyOf(item) : std::string(), true);
    });
    onUser(context, &tree, &QTreeWidget::itemDoubleClicked,
        [&view, keyOf](QTreeWidgetItem* item, int) { view.userDoubleClick(keyOf(item)); });
    onUser(context, &tree, &QTreeWidget::itemChanged, [&view, keyOf](QTreeWidgetItem* item, int column) {
        const auto* row = view.row(keyOf(item));
        const bool checked = item->checkState(0) == Qt::Checked;
        if (column == 0 && view.checkBoxes() && row && row->checked != checked)
            view.userCheck(keyOf(item), checked);
    });
    onUser(context, tree.header(), &QHeaderView::sectionClicked,
        [&view](int column) { view.userColumnClick(column); });
    return true;
}

bool bindTabStrip(ui::TabStrip& strip, QTabBar& bar, const BindContext& context)
{
    mirror(strip, bar, context, [](ui::TabStrip& c, QTabBar& w, ui::Change what, const std::string&) {
        if (all(what, ui::Change::Tabs)) {
            while (w.count() > c.tabCount())
                w.removeTab(w.count() - 1);
            for (int i = 0; i < c.tabCount(); ++i) {
                if (i >= w.count())
                    w.addTab(QString());
                w.setTabText(i, qs(c.tabs()[i].caption));
                w.setTabVisible(i, c.tabs()[i].visible);
            }
        }
        w.setCurrentIndex(c.selectedIndex());
    });
    // Every way the user changes the tab (click, keys, wheel) reaches the control; a tab the
    // control refuses puts the bar back on the control's tab.
    const auto flag = context.applying;
    onUser(context, &bar, &QTabBar::currentChanged, [&strip, &bar, flag](int index) {
        strip.userSelect(index);
        if (strip.selectedIndex() != index) {
            ApplyingGuard guard(*flag);
            bar.setCurrentIndex(strip.selectedIndex());
        }
    });
    return true;
}

bool bindStatusBar(ui::StatusBar& status, QStatusBar& bar, const BindContext& context)
{
    auto panels = std::make_shared<std::vector<StatusPanelLabel*>>();
    const IconProvider* icons = &context.icons;
    mirror(status, bar, context,
        [panels, icons](ui::StatusBar& c, QStatusBar& w, ui::Change what, const std::string&) {
            while (panels->size() < c.panels().size()) {
                const auto& added = c.panels()[panels->size()];
                auto* panel = new StatusPanelLabel(ui::twipsToPixels(added.widthTwips), &w);
                panel->setObjectName(qs(added.key));
                w.addPermanentWidget(panel, added.widthTwips > 0 ? 0 : 1);
                panels->push_back(panel);
            }
            if (what != ui::Change::Rows && what != ui::Change::Panels && what != ui::Change::PanelChanged)
                return;
            for (std::size_t i = 0; i < c.panels().size(); ++i) {
                const auto& panel = c.panels()[i];
                StatusPanelLabel* label = (*panels)[i];
                label->setText(qs(panel.text));
                label->setToolTip(qs(panel.toolTip));
                const bool pictured = *icons && !panel.picture.empty();
                label->setIcon(pictured ? (*icons)(panel.picture).pixmap(16, 16) : QPixmap());
            }
        });
    return true;
}

bool bindRichText(ui::RichTextBox& box, QTextEdit& edit, const BindContext& context)
{
    edit.setReadOnly(true);
    edit.setAcceptRichText(false);
    mirror(box, edit, context,
        [](ui::RichTextBox& c, QTextEdit& w, ui::Change what, const std::string& appended) {
            const auto insert = [&w](const std::string& text, platform::Rgb color) {
                QTextCursor cursor(w.document());
                cursor.movePosition(QTextCursor::End);
                QTextCharFormat format;
                format.setForeground(toQColor(color));
                cursor.insertText(qs(text), format);
            };
            if (what == ui::Change::Rows || what == ui::Change::Cleared) {
                w.clear();
                for (const auto& run : c.runs())
                    insert(run.text, run.color);
            } else if (what == ui::Change::Appended) {
                insert(appended, c.selColor());
                w.moveCursor(QTextCursor::End);
                w.ensureCursorVisible();
            }
        });
    return true;
}

template <typename W> W* as(QObject& target)
{
    return qobject_cast<W*>(&target);
}

} // namespace

bool bindControl(ui::Control& control, QObject& target, const BindContext& context)
{
    if (auto* c = dynamic_cast<ui::Label*>(&control); c && as<QLabel>(target))
        return bindLabel(*c, *as<QLabel>(target), context);
    if (auto* c = dynamic_cast<ui::TextBox*>(&control))
        return bindTextBox(*c, target, context);
    if (auto* c = dynamic_cast<ui::CheckBox*>(&control); c && as<QCheckBox>(target))
        return bindCheckBox(*c, *as<QCheckBox>(target), context);
    if (auto* c = dynamic_cast<ui::Button*>(&control); c && as<QAbstractButton>(target))
        return bindButton(*c, *as<QAbstractButton>(target), context);
    if (auto* c = dynamic_cast<ui::MenuItem*>(&control); c && as<QAction>(target))
        return bindMenuItem(*c, *as<QAction>(target), context);
    if (auto* c = dynamic_cast<ui::MenuItem*>(&control); c && as<QMenu>(target))
        return bindMenuItem(*c, *as<QMenu>(target)->menuAction(), context);
    if (auto* c = dynamic_cast<ui::Chart*>(&control))
        return bindChart(*c, target, context);
    if (auto* c = dynamic_cast<ui::TrayIcon*>(&control); c && as<QSystemTrayIcon>(target))
        return bindTrayIcon(*c, *as<QSystemTrayIcon>(target), context);
    if (auto* c = dynamic_cast<ui::ItemList*>(&control))
        return bindItemList(*c, target, context);
    if (auto* c = dynamic_cast<ui::ListView*>(&control); c && as<QTreeWidget>(target))
        return bindListView(*c, *as<QTreeWidget>(target), context);
    if (auto* c = dynamic_cast<ui::TabStrip*>(&control); c && as<QTabBar>(target))
        return bindTabStrip(*c, *as<QTabBar>(target), context);
    if (auto* c = dynamic_cast<ui::StatusBar*>(&control); c && as<QStatusBar>(target))
        return bindStatusBar(*c, *as<QStatusBar>(target), context);
    if (auto* c = dynamic_cast<ui::RichTextBox*>(&control); c && as<QTextEdit>(target))
        return bindRichText(*c, *as<QTextEdit>(target), context);
    if (auto* c = dynamic_cast<ui::Frame*>(&control); c && as<QGroupBox>(target)) {
        mirror(*c, *as<QGroupBox>(target), context,
            [](ui::Frame& f, QGroupBox& w, ui::Change what, const std::string&) {
                if (all(what, ui::Change::Caption))
                    w.setTitle(qs(f.caption()));
            });
        return true;
    }
    if (auto* c = dynamic_cast<ui::ProgressBar*>(&control); c && as<QProgressBar>(target)) {
        mirror(*c, *as<QProgressBar>(target), context,
            [](ui::ProgressBar& p, QProgressBar& w, ui::Change, const std::string&) {
                w.setRange(p.min(), p.max());
                w.setValue(p.value());
                w.setTextVisible(!p.caption().empty());
                w.setFormat(qs(p.caption()));
                w.setAlignment(Qt::AlignCenter);
            });
        return true;
    }
    return false;
}

} // namespace zv::qt
