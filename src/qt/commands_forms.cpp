#include "qt/commands_forms.h"

#include <QLabel>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

QLabel* label(QWidget* form, const char* name)
{
    auto* widget = new QLabel(form);
    widget->setObjectName(name);
    widget->setTextFormat(Qt::PlainText);
    widget->setAlignment(Qt::AlignCenter);
    return widget;
}

void scaleFont(QLabel* widget, double factor, bool bold)
{
    QFont font = widget->font();
    font.setPointSizeF(font.pointSizeF() * factor);
    font.setBold(bold);
    widget->setFont(font);
}

} // namespace

std::unique_ptr<QWidget> makeSafeDisconnectForm()
{
    auto form = std::make_unique<QWidget>(
        nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowStaysOnTopHint);
    form->setObjectName("frmSafeDisconnect");
    form->setWindowModality(Qt::ApplicationModal);
    auto* layout = new QVBoxLayout(form.get());

    auto* heading = label(form.get(), "lblHeading");
    scaleFont(heading, 1.6, true);
    auto* message = label(form.get(), "lblMessage");
    message->setWordWrap(true);
    message->setMinimumWidth(420);
    auto* time = label(form.get(), "lblTime");
    scaleFont(time, 1.3, true);

    layout->addWidget(heading);
    layout->addWidget(message, 1);
    layout->addWidget(time);
    return form;
}

std::unique_ptr<QWidget> makeCommandsFormFor(const std::string& windowName)
{
    if (windowName == "frmSafeDisconnect")
        return makeSafeDisconnectForm();
    return nullptr;
}

} // namespace zv::qt
