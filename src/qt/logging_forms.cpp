#include "qt/logging_forms.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

template <typename W> W* named(QWidget* parent, const QString& name)
{
    auto* widget = new W(parent);
    widget->setObjectName(name);
    return widget;
}

std::unique_ptr<QWidget> dialog(const char* name)
{
    auto form = std::make_unique<QWidget>(nullptr, Qt::Dialog);
    form->setObjectName(name);
    form->setWindowModality(Qt::ApplicationModal);
    return form;
}

QHBoxLayout* okCancel(QWidget* form)
{
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* ok = named<QPushButton>(form, "cmdOK");
    ok->setDefault(true);
    buttons->addWidget(ok);
    buttons->addWidget(named<QPushButton>(form, "cmdCancel"));
    return buttons;
}

// Three frames, each: "Current File:", the path, and the button that changes it.
std::unique_ptr<QWidget> makeLoggingForm()
{
    auto form = dialog("frmLogging");
    auto* layout = new QVBoxLayout(form.get());
    for (int i = 0; i < 3; ++i) {
        auto* frame = named<QGroupBox>(form.get(), QString("fraFile(%1)").arg(i));
        auto* row = new QHBoxLayout(frame);
        row->addWidget(named<QLabel>(frame, QString("lblCurrent(%1)").arg(i)));
        auto* path = named<QLabel>(frame, QString("lblFile(%1)").arg(i));
        path->setMinimumWidth(420);
        path->setTextInteractionFlags(Qt::TextSelectableByMouse);
        row->addWidget(path, 1);
        auto* button = named<QPushButton>(frame, QString("cmdSelectFle(%1)").arg(i));
        button->setAutoDefault(false);
        button->setFixedWidth(36);
        row->addWidget(button);
        layout->addWidget(frame);
    }
    layout->addWidget(named<QCheckBox>(form.get(), "chkAutoLog"));
    layout->addLayout(okCancel(form.get()));
    return form;
}

std::unique_ptr<QWidget> makeCommentForm()
{
    auto form = dialog("frmLogComment");
    form->setWindowFlag(Qt::WindowStaysOnTopHint);
    auto* layout = new QVBoxLayout(form.get());
    layout->addWidget(named<QLabel>(form.get(), "lblComment"));
    auto* text = named<QLineEdit>(form.get(), "txtComment");
    text->setMinimumWidth(360);
    layout->addWidget(text);
    layout->addLayout(okCancel(form.get()));
    // Return in the text box is OK, as in a dialog.
    auto* ok = form->findChild<QPushButton*>("cmdOK");
    QObject::connect(text, &QLineEdit::returnPressed, ok, &QPushButton::click);
    return form;
}

} // namespace

std::unique_ptr<QWidget> makeLoggingFormFor(const std::string& windowName)
{
    if (windowName == "frmLogging")
        return makeLoggingForm();
    if (windowName == "frmLogComment")
        return makeCommentForm();
    return nullptr;
}

} // namespace zv::qt
