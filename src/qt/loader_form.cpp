#include "qt/loader_form.h"

#include <QAction>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>

#include <utility>

namespace zv::qt {

namespace {

QLabel* label(QWidget* parent, const char* name = nullptr, const char* text = "")
{
    auto* widget = new QLabel(QString::fromUtf8(text), parent);
    if (name)
        widget->setObjectName(QString::fromLatin1(name));
    widget->setTextFormat(Qt::PlainText);
    return widget;
}

QLabel* value(QWidget* parent, const char* name)
{
    auto* widget = label(parent, name);
    widget->setMinimumWidth(120);
    widget->setFrameShape(QFrame::StyledPanel);
    widget->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return widget;
}

QAction* action(QMenu* menu, const char* name, const char* caption)
{
    auto* entry = menu->addAction(QString::fromUtf8(caption));
    entry->setObjectName(QString::fromLatin1(name));
    return entry;
}

QGroupBox* fileGroup(QWidget* parent)
{
    auto* group = new QGroupBox(QStringLiteral("Firmware File"), parent);
    auto* grid = new QGridLayout(group);
    grid->addWidget(label(group, nullptr, "File:"), 0, 0);
    grid->addWidget(value(group, "lblFile"), 0, 1, 1, 3);
    grid->addWidget(label(group, nullptr, "Sections:"), 1, 0);
    grid->addWidget(value(group, "lblFileCount"), 1, 1);
    grid->addWidget(label(group, "lblAppVersion", "App Version:"), 2, 0);
    grid->addWidget(value(group, "lblFile1Version"), 2, 1);
    grid->addWidget(label(group, "lblDataVersion", "Data Version:"), 2, 2);
    grid->addWidget(value(group, "lblFile2Version"), 2, 3);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    return group;
}

QGroupBox* systemGroup(QWidget* parent)
{
    auto* group = new QGroupBox(QStringLiteral("Information"), parent);
    group->setObjectName("fraSystemInfo");
    auto* grid = new QGridLayout(group);
    const std::pair<const char*, const char*> rows[] = {
        { "Firmware Version:", "lblFW" },
        { "Firmware CRC:", "lblFWCRC" },
        { "Application F File Version:", "lblAppFFileVersion" },
        { "Application System Version:", "lblAppSysVersion" },
        { "F File Version:", "lblFFileVersion" },
        { "F Directory CRC:", "lblFDirCRC" },
        { "Data CRC:", "lblDataCRC" },
        { "System Version:", "lblSystemVersion" },
        { "System CRC:", "lblSystemCRC" },
        { "System Status:", "lblSystemStatus" },
    };
    int i = 0;
    for (const auto& [caption, name] : rows) {
        const int row = i / 2;
        const int column = (i % 2) * 2;
        grid->addWidget(label(group, nullptr, caption), row, column);
        grid->addWidget(value(group, name), row, column + 1);
        ++i;
    }
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);
    return group;
}

} // namespace

std::unique_ptr<QWidget> makeBootStrapLoaderForm()
{
    auto form = std::make_unique<QMainWindow>();
    form->setObjectName("frmBootStrapLoader");
    form->resize(720, 560);

    auto* file = form->menuBar()->addMenu(QStringLiteral("&File"));
    file->setObjectName("mnuFile");
    action(file, "mnuLoad", "&Load Image...");
    action(file, "mnuDownload", "&Download");
    action(file, "mnuGetSystemInformation", "&Get System Information");
    file->addSeparator();
    action(file, "mnuClose", "&Close");
    action(file, "mnuExit", "E&xit");

    auto* central = new QWidget(form.get());
    auto* layout = new QVBoxLayout(central);
    auto* warning = label(central, "lblWarning");
    warning->setWordWrap(true);
    QFont bold = warning->font();
    bold.setBold(true);
    warning->setFont(bold);
    warning->setStyleSheet(QStringLiteral("color: #b00000;"));
    layout->addWidget(warning);
    layout->addWidget(fileGroup(central));
    layout->addWidget(systemGroup(central));

    auto* progress = new QProgressBar(central);
    progress->setObjectName("pgbRecords");
    layout->addWidget(progress);
    auto* status = label(central, "lblStatus");
    status->setWordWrap(true);
    layout->addWidget(status);

    auto* actions = new QHBoxLayout;
    auto* preserve = new QCheckBox(central);
    preserve->setObjectName("chkPreserve");
    actions->addWidget(preserve);
    actions->addStretch(1);
    auto* load = new QPushButton(central);
    load->setObjectName("cmdLoadImage");
    auto* download = new QPushButton(central);
    download->setObjectName("cmdDownload");
    actions->addWidget(load);
    actions->addWidget(download);
    layout->addLayout(actions);
    layout->addStretch(1);

    form->setCentralWidget(central);
    form->statusBar()->setObjectName("sbStatusBar");
    return form;
}

std::unique_ptr<QWidget> makeLoaderFormFor(const std::string& windowName)
{
    if (windowName == "frmBootStrapLoader")
        return makeBootStrapLoaderForm();
    return nullptr;
}

} // namespace zv::qt
