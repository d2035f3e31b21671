#include "qt/main_form.h"

#include "monitor/frm_main.h"
#include "qt/plot_panel.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QStyle>
#include <QSystemTrayIcon>
#include <QTabBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

QString qs(const std::string& s)
{
    return QString::fromStdString(s);
}

void addEntries(QMenu& menu, const std::vector<MenuNode>& nodes)
{
    for (const MenuNode& node : nodes) {
        const QString name = qs(node.item->name());
        if (node.isSeparator()) {
            menu.addSeparator()->setObjectName(name);
        } else if (node.isSubMenu()) {
            QMenu* sub = menu.addMenu(qs(node.item->caption()));
            sub->setObjectName(name);
            addEntries(*sub, node.children);
        } else {
            menu.addAction(qs(node.item->caption()))->setObjectName(name);
        }
    }
}

template <typename W> W* named(const std::string& name, QWidget* parent)
{
    auto* widget = new W(parent);
    widget->setObjectName(qs(name));
    return widget;
}

QTreeWidget* list(const std::string& name, QWidget* parent)
{
    auto* tree = named<QTreeWidget>(name, parent);
    tree->setSelectionMode(QAbstractItemView::SingleSelection);
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    return tree;
}

// A tab strip over a stack of lists; the stack shows the list of the chosen tab.
QWidget* tabbedLists(const platform::ui::TabStrip& strip, const auto& lists, QWidget* parent)
{
    auto* box = new QWidget(parent);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* bar = named<QTabBar>(strip.name(), box);
    auto* stack = new QStackedWidget(box);
    for (const auto& view : lists)
        stack->addWidget(list(view.name(), stack));
    QObject::connect(bar, &QTabBar::currentChanged, stack, &QStackedWidget::setCurrentIndex);
    layout->addWidget(bar);
    layout->addWidget(stack);
    return box;
}

QWidget* cellPanel(const frmMain& window, QWidget* parent)
{
    auto* panel = new QWidget(parent);
    auto* layout = new QVBoxLayout(panel);
    auto* buttons = new QHBoxLayout;
    for (const auto* button : { &window.cmdCollapsePack, &window.cmdCollapseCells })
        buttons->addWidget(named<QPushButton>(button->name(), panel));
    buttons->addStretch();
    buttons->addWidget(named<QComboBox>(window.cmbPollRate.name(), panel));
    layout->addLayout(buttons);
    auto* gateway = list(window.lvGateway.name(), panel);
    gateway->setMaximumHeight(64);
    layout->addWidget(gateway);
    layout->addWidget(list(window.lvNodes.name(), panel), 2);
    layout->addWidget(tabbedLists(window.SSTab1, window.lvProperties, panel), 1);
    return panel;
}

QWidget* parameterPanel(const frmMain& window, QWidget* parent)
{
    auto* panel = new QWidget(parent);
    auto* layout = new QVBoxLayout(panel);
    auto* states = new QHBoxLayout;
    for (const auto* label : { &window.lblSHIP_BIT, &window.lblUNLOCK_BIT, &window.lblCONFIG_BIT })
        states->addWidget(named<QLabel>(label->name(), panel));
    states->addStretch();
    layout->addLayout(states);
    layout->addWidget(tabbedLists(window.SSTab, window.lvParameters, panel), 3);
    auto* frame = named<QGroupBox>(window.fraStatus.name(), panel);
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->addWidget(list(window.lvStatus.name(), frame));
    layout->addWidget(frame, 1);
    return panel;
}

QWidget* centralArea(const frmMain& window, QWidget* parent)
{
    auto* split = new QSplitter(parent);
    split->addWidget(cellPanel(window, split));
    split->addWidget(parameterPanel(window, split));
    return split;
}

} // namespace

std::unique_ptr<QMainWindow> makeMainForm(const frmMain& window)
{
    auto form = std::make_unique<QMainWindow>();
    form->setObjectName("frmMain");
    for (const MenuNode& node : window.menuBar()) {
        QMenu* menu = form->menuBar()->addMenu(qs(node.item->caption()));
        menu->setObjectName(qs(node.item->name()));
        addEntries(*menu, node.children);
    }
    for (const MenuNode& node : window.popupMenus()) {
        auto* menu = new QMenu(qs(node.item->caption()), form.get());
        menu->setObjectName(qs(node.item->name()));
        addEntries(*menu, node.children);
    }
    form->setCentralWidget(plotArea(window, centralArea(window, nullptr), form.get()));
    form->statusBar()->setObjectName("sbStatusBar");
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        const QIcon icon = QApplication::windowIcon().isNull()
            ? form->style()->standardIcon(QStyle::SP_ComputerIcon)
            : QApplication::windowIcon();
        auto* tray = new QSystemTrayIcon(icon, form.get());
        tray->setObjectName("trayIcon");
    }
    return form;
}

} // namespace zv::qt
