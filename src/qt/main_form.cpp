#include "qt/main_form.h"

#include "monitor/frm_main.h"
#include "qt/list_widgets.h"
#include "qt/plot_panel.h"
#include "qt/status_panes_panel.h"

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QSystemTrayIcon>
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
    auto* gateway = reportList(window.lvGateway.name(), panel);
    gateway->setMaximumHeight(64);
    layout->addWidget(gateway);
    layout->addWidget(reportList(window.lvNodes.name(), panel), 2);
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
    return panel;
}

QWidget* centralArea(const frmMain& window, QWidget* parent)
{
    auto* split = new QSplitter(parent);
    split->addWidget(cellPanel(window, split));
    split->addWidget(parameterPanel(window, split));
    split->addWidget(statusPanesPanel(window, split));
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
    auto* progress = new QProgressBar(form->statusBar());
    progress->setObjectName("picProgress");
    progress->setMaximumWidth(280);
    progress->hide();
    form->statusBar()->addWidget(progress, 1);
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
