#include "qt/editor_form.h"

#include "editor/frm_edit_parameter.h"
#include "qt/binder.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

constexpr int kNoLimit = 32767; // QLineEdit's own default

template <typename W> W* named(QWidget* parent, const char* name)
{
    auto* widget = new W(parent);
    widget->setObjectName(name);
    return widget;
}

// Passes the typed characters of txtNewValue through the logic's key filter, and on each showing
// of the dialog applies the length limit and selects the whole text.
class NewValueKeys : public QObject {
public:
    NewValueKeys(frmEditParameter& logic, QWidget& form, QLineEdit& box)
        : QObject(&form)
        , logic_(logic)
        , form_(&form)
        , box_(&box)
        , boxWidget_(&box)
    {
        form.installEventFilter(this);
        box.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // Compared by address only: the objects may be half destroyed when their last events come.
        if (watched == form_ && event->type() == QEvent::Show && boxWidget_) {
            boxWidget_->setMaxLength(logic_.newValueMaxLength() > 0 ? logic_.newValueMaxLength() : kNoLimit);
            boxWidget_->selectAll();
            boxWidget_->setFocus();
        } else if (watched == box_ && event->type() == QEvent::KeyPress) {
            const auto* key = static_cast<QKeyEvent*>(event);
            const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
            if (!enter && !key->text().isEmpty() && !logic_.txtNewValue_KeyPress(key->text().at(0).unicode()))
                return true;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    frmEditParameter& logic_;
    const QObject* form_;
    const QObject* box_;
    QPointer<QLineEdit> boxWidget_;
};

// A caption in the first column and the named control in the second.
void addRow(QGridLayout* grid, QWidget* parent, const char* caption, QWidget* field)
{
    const int row = grid->rowCount();
    grid->addWidget(new QLabel(caption, parent), row, 0);
    grid->addWidget(field, row, 1);
}

QGroupBox* plainFrame(QWidget* form)
{
    auto* frame = named<QGroupBox>(form, "fraParameter");
    auto* grid = new QGridLayout(frame);
    addRow(grid, frame, "Current Value:", named<QLabel>(frame, "lblCurrentValue"));
    addRow(grid, frame, "Valid Range:", named<QLabel>(frame, "lblValidRange"));
    addRow(grid, frame, "New Value:", named<QLineEdit>(frame, "txtNewValue"));
    auto* note = named<QLabel>(frame, "lblValidation(0)");
    note->setStyleSheet("color: red");
    grid->addWidget(note, grid->rowCount(), 1);
    grid->addWidget(named<QLabel>(frame, "lblValidation(3)"), grid->rowCount(), 1);
    auto* format = named<QWidget>(frame, "optFormat");
    new QHBoxLayout(format);
    grid->addWidget(format, grid->rowCount(), 1);
    return frame;
}

QGroupBox* rawFrame(QWidget* form)
{
    auto* frame = new QGroupBox("Raw Values", form);
    frame->setObjectName("fraRaw");
    auto* grid = new QGridLayout(frame);
    addRow(grid, frame, "Current Value:", named<QLabel>(frame, "lblCurrentValueRaw"));
    addRow(grid, frame, "Valid Range:", named<QLabel>(frame, "lblValidRangeRaw"));
    addRow(grid, frame, "New Value:", named<QLineEdit>(frame, "txtNewValueRaw"));
    return frame;
}

QGroupBox* bitFrame(QWidget* form)
{
    auto* frame = named<QGroupBox>(form, "fraBitEncoded");
    auto* layout = new QVBoxLayout(frame);
    auto* bits = named<QTreeWidget>(frame, "lstBitEncoded");
    bits->setHeaderHidden(true);
    layout->addWidget(bits, 1);
    auto* grid = new QGridLayout;
    addRow(grid, frame, "Current Value:", named<QLabel>(frame, "lblCurrentValueRawBE"));
    addRow(grid, frame, "New Value:", named<QLineEdit>(frame, "txtNewValueRawBE"));
    layout->addLayout(grid);
    return frame;
}

} // namespace

std::unique_ptr<QWidget> makeEditParameterForm(frmEditParameter& form)
{
    auto widget = std::make_unique<QWidget>(nullptr, Qt::Dialog);
    widget->setObjectName("frmEditParameter");
    widget->setWindowModality(Qt::ApplicationModal);
    auto* layout = new QVBoxLayout(widget.get());
    layout->addWidget(plainFrame(widget.get()));
    layout->addWidget(rawFrame(widget.get()));
    layout->addWidget(bitFrame(widget.get()), 1);
    layout->addWidget(named<QCheckBox>(widget.get(), "chkAutoWrite"));

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(named<QPushButton>(widget.get(), "cmdInfo"));
    buttons->addStretch(1);
    auto* ok = named<QPushButton>(widget.get(), "cmdOK");
    ok->setDefault(true);
    buttons->addWidget(ok);
    buttons->addWidget(named<QPushButton>(widget.get(), "cmdCancel"));
    layout->addLayout(buttons);

    auto* box = widget->findChild<QLineEdit*>("txtNewValue");
    new NewValueKeys(form, *widget, *box);
    form.focusNewValue = [target = QPointer<QLineEdit>(box)] {
        if (target)
            target->setFocus();
    };
    return widget;
}

platform::ui::ShowModal editParameterModal(Binder& binder, platform::EventLoop& loop)
{
    return [&binder, run = platform::ui::eventLoopModal(loop)](platform::ui::Window& window) {
        auto& form = dynamic_cast<frmEditParameter&>(window);
        if (!binder.widgetOf(form))
            (void)binder.bind(form, makeEditParameterForm(form));
        run(form);
    };
}

} // namespace zv::qt
