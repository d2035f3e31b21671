#include "qt/main_form.h"

#include "monitor/frm_main.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QStyle>
#include <QSystemTrayIcon>
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

QWidget* stateLabels(QWidget* parent)
{
    auto* central = new QWidget(parent);
    auto* layout = new QVBoxLayout(central);
    auto* states = new QHBoxLayout;
    for (const char* name : { "lblSHIP_BIT", "lblUNLOCK_BIT", "lblCONFIG_BIT" }) {
        auto* label = new QLabel(central);
        label->setObjectName(name);
        states->addWidget(label);
    }
    states->addStretch();
    layout->addLayout(states);
    layout->addStretch(); // the lists, tabs and plot of the live monitor go here
    return central;
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
    form->setCentralWidget(stateLabels(form.get()));
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
