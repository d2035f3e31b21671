// The Qt form of the edit dialog: every control finds its widget, and the widget applies the
// logic's key filter and length limit.

#include "editor_fixture.h"
#include "qt/binder.h"
#include "qt/editor_form.h"
#include "ui/widgets_app.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <gtest/gtest.h>

using namespace zv;

namespace {

void typeKey(QLineEdit& box, char key)
{
    QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(QChar(key)));
    QApplication::sendEvent(&box, &press);
}

class EditorFormTest : public ::testing::Test, public test::EditorFixture { };

} // namespace

TEST_F(EditorFormTest, TheWidgetFiltersKeysAndLimitsLength)
{
    test::ensureWidgets();
    qt::Binder binder;
    auto widget = qt::makeEditParameterForm(form);
    QLineEdit* box = widget->findChild<QLineEdit*>("txtNewValue");
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(widget->isModal());
    EXPECT_EQ(binder.bind(form, std::move(widget)), std::vector<std::string> {});

    auto number = word(0, 100);
    edit(number, [&](frmEditParameter&) {
        box->clear();
        for (const char key : std::string("4a2.-"))
            typeKey(*box, key);
        EXPECT_EQ(form.txtNewValue.text(), "42-");
        EXPECT_EQ(form.lblValidationNote.caption(), "Invalid characters");
        box->setCursorPosition(0);
        QKeyEvent del(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(QChar(127)));
        QApplication::sendEvent(box, &del);
        EXPECT_EQ(form.txtNewValue.text(), "2-") << "Delete removes the character after the cursor";
    });

    auto text = word(0, 0);
    text.SubBlockDataType = 6;
    edit(
        text,
        [&](frmEditParameter&) {
            EXPECT_EQ(box->maxLength(), 3);
            box->clear();
            for (const char key : std::string("ab.-x"))
                typeKey(*box, key);
            EXPECT_EQ(form.txtNewValue.text(), "ab.");
        },
        3);
}
