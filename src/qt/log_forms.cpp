#include "qt/log_forms.h"

#include "qt/logging_forms.h"

#include "qt/access_forms.h"
#include "qt/commands_forms.h"
#include "qt/outputs_forms.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace zv::qt {

namespace {

std::unique_ptr<QWidget> topLevel(const char* name)
{
    auto form = std::make_unique<QWidget>(nullptr, Qt::Window);
    form->setObjectName(name);
    return form;
}

} // namespace

std::unique_ptr<QWidget> makeEventLogForm()
{
    auto form = topLevel("frmEventLog");
    auto* text = new QPlainTextEdit(form.get());
    text->setObjectName("txtEvent");
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    return form;
}

std::unique_ptr<QWidget> makeModemLogForm()
{
    auto form = topLevel("frmModemLog");
    auto* text = new QTextEdit(form.get());
    text->setObjectName("rtfEvent");
    text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    text->setLineWrapMode(QTextEdit::NoWrap);
    return form;
}

std::unique_ptr<QWidget> makeFormFor(const std::string& windowName)
{
    if (windowName == "frmEventLog")
        return makeEventLogForm();
    if (windowName == "frmModemLog")
        return makeModemLogForm();
    if (auto form = makeOutputsFormFor(windowName))
        return form;
    if (auto form = makeCommandsFormFor(windowName))
        return form;
    if (auto form = makeLoggingFormFor(windowName))
        return form;
    return makeAccessFormFor(windowName);
}

} // namespace zv::qt
