#include "qt/main_shell.h"

#include "core/active_form.h"

#include <QMenuBar>
#include <QStatusBar>

namespace zv::qt {

MainShell::MainShell()
    : Window("frmMain")
{
    setCaption("Zentavia");
    setBounds({ 0, 0, 12000, 8000 });
    sbStatusBar.addPanel({ kInfoPanel });
    mnuExit.onClick = [this] { requestClose(); };
    addControls({ &mnuEventLog, &mnuCommunicationsLog, &mnuExit, &sbStatusBar });
}

void MainShell::handleUnload()
{
    if (onExit)
        onExit();
}

std::unique_ptr<QMainWindow> makeMainShellForm()
{
    auto form = std::make_unique<QMainWindow>();
    form->setObjectName("frmMain");
    QMenu* file = form->menuBar()->addMenu("&File");
    file->addAction("E&xit")->setObjectName("mnuExit");
    QMenu* view = form->menuBar()->addMenu("&View");
    view->addAction("&Event Log")->setObjectName("mnuEventLog");
    view->addAction("&Communications Log")->setObjectName("mnuCommunicationsLog");
    form->statusBar()->setObjectName("sbStatusBar");
    form->setCentralWidget(new QWidget(form.get()));
    return form;
}

} // namespace zv::qt
