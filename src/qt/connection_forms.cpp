#include "qt/connection_forms.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

std::unique_ptr<QWidget> modalDialog(const char* name)
{
    auto form = std::make_unique<QWidget>(nullptr, Qt::Dialog);
    form->setObjectName(name);
    form->setWindowModality(Qt::ApplicationModal);
    return form;
}

template <typename W> W* named(QWidget* parent, const char* name)
{
    auto* widget = new W(parent);
    widget->setObjectName(name);
    return widget;
}

// The bold title and the wrapped description at the top of both port dialogs.
void addTexts(QWidget* form, QVBoxLayout* layout)
{
    auto* title = named<QLabel>(form, "lblTitle");
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    auto* description = named<QLabel>(form, "lblErrorDescription");
    description->setWordWrap(true);
    description->setTextFormat(Qt::PlainText);
    description->setMinimumWidth(420);
    description->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    layout->addWidget(title);
    layout->addWidget(description, 1);
}

QComboBox* portList(QWidget* form)
{
    auto* ports = named<QComboBox>(form, "cmbCommPort");
    ports->setMinimumContentsLength(16);
    return ports;
}

} // namespace

std::unique_ptr<QWidget> makeCommPortErrorForm()
{
    auto form = modalDialog("frmCommPortError");
    auto* layout = new QVBoxLayout(form.get());
    addTexts(form.get(), layout);

    auto* portRow = new QHBoxLayout;
    portRow->addWidget(new QLabel("Available ports:", form.get()));
    portRow->addWidget(portList(form.get()), 1);
    portRow->addWidget(named<QPushButton>(form.get(), "cmdRefresh"));
    portRow->addWidget(named<QPushButton>(form.get(), "cmdConnect"));
    layout->addLayout(portRow);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(named<QPushButton>(form.get(), "cmdContinueDisconnected"));
    buttons->addWidget(named<QPushButton>(form.get(), "cmdExitApplication"));
    layout->addLayout(buttons);
    return form;
}

std::unique_ptr<QWidget> makeCommPortForm()
{
    auto form = modalDialog("frmCommPort");
    auto* layout = new QVBoxLayout(form.get());

    auto* choices = new QFormLayout;
    auto* portRow = new QHBoxLayout;
    portRow->addWidget(portList(form.get()), 1);
    portRow->addWidget(named<QPushButton>(form.get(), "cmdConnect"));
    choices->addRow("COM Port:", portRow);
    choices->addRow("Baud Rate:", named<QComboBox>(form.get(), "cmbBaud"));
    choices->addRow("Hardware Clock:", named<QComboBox>(form.get(), "cmbClock"));
    layout->addLayout(choices);
    addTexts(form.get(), layout);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    auto* cancel = named<QPushButton>(form.get(), "cmdComms(0)");
    cancel->setIcon(form->style()->standardIcon(QStyle::SP_DialogCancelButton));
    auto* apply = named<QPushButton>(form.get(), "cmdComms(1)");
    apply->setIcon(form->style()->standardIcon(QStyle::SP_DialogOkButton));
    apply->setDefault(true);
    buttons->addWidget(apply);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    return form;
}

std::unique_ptr<QWidget> makeSMBusAddressForm()
{
    auto form = modalDialog("frmSMBusAddress");
    auto* layout = new QHBoxLayout(form.get());
    layout->addWidget(new QLabel("Target address:", form.get()));
    layout->addWidget(named<QComboBox>(form.get(), "cmbAddress"), 1);
    layout->addWidget(named<QPushButton>(form.get(), "cmdFind"));
    return form;
}

std::unique_ptr<QWidget> makeConnectionForm(const std::string& windowName)
{
    if (windowName == "frmCommPortError")
        return makeCommPortErrorForm();
    if (windowName == "frmCommPort")
        return makeCommPortForm();
    if (windowName == "frmSMBusAddress")
        return makeSMBusAddressForm();
    return nullptr;
}

} // namespace zv::qt
