#include "qt/list_widgets.h"

#include <QHeaderView>
#include <QStackedWidget>
#include <QTabBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace zv::qt {

QTreeWidget* reportList(const std::string& name, QWidget* parent)
{
    auto* tree = named<QTreeWidget>(name, parent);
    tree->setSelectionMode(QAbstractItemView::SingleSelection);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    return tree;
}

QWidget* tabbedLists(const std::string& stripName, const std::vector<std::string>& listNames, QWidget* parent)
{
    auto* box = new QWidget(parent);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* bar = named<QTabBar>(stripName, box);
    auto* stack = new QStackedWidget(box);
    for (const auto& name : listNames) {
        QTreeWidget* list = reportList(name, stack);
        // Names are read whole: each column is as wide as its longest text, the last takes the rest.
        list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
        stack->addWidget(list);
    }
    QObject::connect(bar, &QTabBar::currentChanged, stack, &QStackedWidget::setCurrentIndex);
    layout->addWidget(bar);
    layout->addWidget(stack);
    return box;
}

} // namespace zv::qt
