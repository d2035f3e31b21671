#include "qt/access_forms.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

constexpr int kPasswordLength = 8;

std::unique_ptr<QWidget> modalForm(const char* name)
{
    auto form = std::make_unique<QWidget>(nullptr, Qt::Dialog);
    form->setObjectName(name);
    form->setWindowModality(Qt::ApplicationModal);
    return form;
}

template <typename W> W* named(QWidget* parent, const QString& name)
{
    auto* widget = new W(parent);
    widget->setObjectName(name);
    return widget;
}

// The login hides what is typed; the level passwords dialog shows the passwords it lists.
QLineEdit* passwordField(QWidget* parent, const QString& name, QLineEdit::EchoMode echo)
{
    auto* field = named<QLineEdit>(parent, name);
    field->setMaxLength(kPasswordLength);
    field->setEchoMode(echo);
    return field;
}

// Two buttons at the bottom right, the first the default.
QHBoxLayout* buttonRow(QWidget* form, const char* accept, const char* reject)
{
    auto* row = new QHBoxLayout;
    row->addStretch();
    auto* ok = named<QPushButton>(form, accept);
    ok->setDefault(true);
    row->addWidget(ok);
    row->addWidget(named<QPushButton>(form, reject));
    return row;
}

} // namespace

std::unique_ptr<QWidget> makeLoginForm()
{
    auto form = modalForm("frmLogin");
    auto* picture = new QLabel(form.get());
    const int size = form->style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    picture->setPixmap(form->style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size, size));
    picture->setAlignment(Qt::AlignTop);

    auto* message = named<QLabel>(form.get(), "Label2");
    message->setWordWrap(true);
    message->setMinimumWidth(320);
    auto* field = new QHBoxLayout;
    field->addWidget(named<QLabel>(form.get(), "lblPassword"));
    field->addWidget(passwordField(form.get(), "txtPassword", QLineEdit::Password), 1);

    auto* text = new QVBoxLayout;
    text->addWidget(message);
    text->addLayout(field);
    auto* top = new QHBoxLayout;
    top->addWidget(picture);
    top->addLayout(text, 1);
    auto* layout = new QVBoxLayout(form.get());
    layout->addLayout(top);
    layout->addLayout(buttonRow(form.get(), "cmdLogon", "btnCancel"));
    return form;
}

std::unique_ptr<QWidget> makeUserAccessLevelForm()
{
    auto form = modalForm("frmUserAccessLevel");
    auto* grid = new QGridLayout;
    grid->addWidget(named<QLabel>(form.get(), "Label1"), 0, 0);
    grid->addWidget(named<QComboBox>(form.get(), "cmbAccessLevel"), 0, 1, 1, 2);
    for (int i = 0; i < 3; ++i) {
        const QString index = QStringLiteral("(%1)").arg(i);
        grid->addWidget(named<QLabel>(form.get(), "lvlLevel" + index), i + 1, 0);
        grid->addWidget(passwordField(form.get(), "txtPassword" + index, QLineEdit::Normal), i + 1, 1);
        grid->addWidget(named<QPushButton>(form.get(), "cmdEdit" + index), i + 1, 2);
    }
    auto* layout = new QVBoxLayout(form.get());
    layout->addLayout(grid);
    layout->addStretch();
    layout->addLayout(buttonRow(form.get(), "btnOk", "btnCancel"));
    return form;
}

std::unique_ptr<QWidget> makeAccessFormFor(const std::string& windowName)
{
    if (windowName == "frmLogin")
        return makeLoginForm();
    if (windowName == "frmUserAccessLevel")
        return makeUserAccessLevelForm();
    return nullptr;
}

} // namespace zv::qt
