#include "qt/splash_form.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

QPushButton* button(QWidget* parent, const char* name, const char* caption)
{
    auto* widget = new QPushButton(QString::fromLatin1(caption), parent);
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

} // namespace

std::unique_ptr<QWidget> makeSplashForm()
{
    auto form
        = std::make_unique<QWidget>(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    form->setObjectName("frmSplash");
    form->resize(560, 320);

    auto* title = new QLabel("Zentavia", form.get());
    QFont titleFont = title->font();
    titleFont.setPointSize(titleFont.pointSize() * 2);
    titleFont.setBold(true);
    title->setFont(titleFont);
    auto* version = new QLabel(form.get());
    version->setObjectName("lblVersion");
    auto* status = new QLabel(form.get());
    status->setObjectName("lblStatus");
    status->setWordWrap(true);
    status->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    status->setMinimumHeight(110);
    auto* targets = new QComboBox(form.get());
    targets->setObjectName("cmbTarget");

    auto* choice = new QHBoxLayout;
    choice->addWidget(targets, 1);
    choice->addWidget(button(form.get(), "cmdLoad", "Load"));
    choice->addWidget(button(form.get(), "CmdBootloader", "Bootloader"));
    choice->addWidget(button(form.get(), "cmdExit", "Exit"));
    auto* fault = new QHBoxLayout;
    fault->addStretch(1);
    fault->addWidget(button(form.get(), "btnScan", "Scan"));
    fault->addWidget(button(form.get(), "btnRestart", "Restart"));
    fault->addWidget(button(form.get(), "btnExit", "Exit"));

    auto* layout = new QVBoxLayout(form.get());
    layout->addWidget(title);
    layout->addWidget(version);
    layout->addWidget(status, 1);
    layout->addLayout(choice);
    layout->addLayout(fault);
    return form;
}

} // namespace zv::qt
