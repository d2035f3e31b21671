#include "qt/calibration_forms.h"

#include "calibration/frm_470_cal.h"
#include "calibration/frm_calibration.h"
#include "qt/list_widgets.h"

#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>

namespace zv::qt {

namespace {

// The rules of one entry field: the keys it takes, Enter presses its button, the text is
// selected on entering, and leaving may be refused (the focus goes back).
class EntryRules : public QObject {
public:
    struct Rules {
        std::function<bool(char32_t)> key;
        std::function<void()> enter; // empty: Enter is an ordinary key
        std::function<bool()> leave; // false keeps the focus
    };

    EntryRules(QLineEdit& field, Rules rules)
        : QObject(&field)
        , field_(&field)
        , rules_(std::move(rules))
    {
        field.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != field_ || !field_)
            return QObject::eventFilter(watched, event);
        if (event->type() == QEvent::KeyPress) {
            const auto* key = static_cast<QKeyEvent*>(event);
            if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && rules_.enter) {
                rules_.enter();
                return true;
            }
            if (!key->text().isEmpty() && rules_.key && !rules_.key(key->text().at(0).unicode()))
                return true;
        } else if (event->type() == QEvent::FocusIn) {
            QTimer::singleShot(0, field_, [field = field_] {
                if (field)
                    field->selectAll();
            });
        } else if (event->type() == QEvent::FocusOut && rules_.leave) {
            const auto reason = static_cast<QFocusEvent*>(event)->reason();
            const bool toAnotherControl = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
                || reason == Qt::MouseFocusReason || reason == Qt::OtherFocusReason;
            if (!rules_.leave() && toAnotherControl)
                QTimer::singleShot(0, field_, [field = field_] {
                    if (field)
                        field->setFocus();
                });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QPointer<QLineEdit> field_;
    Rules rules_;
};

QLabel* label(QWidget* parent, const QString& text)
{
    auto* widget = new QLabel(text, parent);
    widget->setWordWrap(true);
    return widget;
}

QPushButton* button(const char* name, QWidget* parent)
{
    return named<QPushButton>(name, parent);
}

QTreeWidget* list(const char* name, QWidget* parent, int height)
{
    QTreeWidget* widget = reportList(name, parent);
    widget->setMinimumHeight(height);
    widget->setRootIsDecorated(false);
    return widget;
}

void redLabel(QLabel* widget)
{
    widget->setStyleSheet("color: red");
}

QGroupBox* voltageFrame(QWidget* form)
{
    auto* frame = named<QGroupBox>("fraVoltage", form);
    auto* grid = new QGridLayout(frame);
    grid->addWidget(label(frame, "Select a cell to calibrate:"), 0, 0);
    grid->addWidget(named<QComboBox>("cmbCells", frame), 0, 1);
    grid->addWidget(named<QLabel>("lblVoltage1", frame), 1, 0, 1, 3);
    grid->addWidget(named<QLineEdit>("txtFirstVoltage", frame), 2, 0, 1, 2);
    grid->addWidget(button("cmdFirstVoltage", frame), 2, 2);
    grid->addWidget(named<QLabel>("lblVoltage2", frame), 3, 0, 1, 3);
    grid->addWidget(named<QLineEdit>("txtSecondVoltage", frame), 4, 0, 1, 2);
    grid->addWidget(button("cmdSecondVoltage", frame), 4, 2);
    auto* low = named<QLabel>("lblErrorVoltageLow", frame);
    auto* high = named<QLabel>("lblErrorVoltageHigh", frame);
    redLabel(low);
    redLabel(high);
    grid->addWidget(low, 5, 0);
    grid->addWidget(high, 5, 1);
    for (auto* prompt :
        { frame->findChild<QLabel*>("lblVoltage1"), frame->findChild<QLabel*>("lblVoltage2") })
        prompt->setWordWrap(true);
    return frame;
}

QGroupBox* temperatureFrame(QWidget* form)
{
    auto* frame = named<QGroupBox>("cfraTemperature", form);
    auto* grid = new QGridLayout(frame);
    grid->addWidget(named<QLabel>("lblTemperatureType", frame), 0, 0, 1, 2);
    grid->addWidget(named<QLineEdit>("txtTemperature", frame), 1, 0);
    grid->addWidget(button("cmdCalTemperature", frame), 1, 1);
    return frame;
}

QGroupBox* currentFrame(QWidget* form)
{
    auto* frame = named<QGroupBox>("cfraCurrent", form);
    auto* grid = new QGridLayout(frame);
    auto* step1 = label(frame, "<b>Step 1</b> Zero Offset");
    grid->addWidget(step1, 0, 0, 1, 2);
    grid->addWidget(label(frame, "Ensure there is no current flowing in or out of the pack. "), 1, 0);
    grid->addWidget(button("cmdCalZeroCurrent", frame), 1, 1);
    grid->addWidget(label(frame, "<b>Step 2</b> Gain"), 2, 0, 1, 2);
    auto* prompt = named<QLabel>("lblCurrentValue", frame);
    prompt->setWordWrap(true);
    grid->addWidget(prompt, 3, 0, 1, 2);
    grid->addWidget(named<QLineEdit>("txtAmps", frame), 4, 0);
    grid->addWidget(button("cmdCalCurrent", frame), 4, 1);
    grid->addWidget(label(frame, "Positive = Charging"), 5, 0);
    grid->addWidget(label(frame, "Negative = Discharging"), 6, 0);
    return frame;
}

std::unique_ptr<QWidget> dialogWidget(const char* name)
{
    auto widget = std::make_unique<QWidget>(nullptr, Qt::Dialog);
    widget->setObjectName(name);
    widget->setWindowModality(Qt::ApplicationModal);
    return widget;
}

std::unique_ptr<QWidget> makeCalibrationForm(frmCalibration& logic)
{
    auto widget = dialogWidget("frmCalibration");
    QWidget* form = widget.get();
    auto* columns = new QHBoxLayout(form);

    auto* steps = new QVBoxLayout;
    auto* attention = named<QLabel>("lblAttentionMessage", form);
    attention->setWordWrap(true);
    redLabel(attention);
    steps->addWidget(attention);
    steps->addWidget(voltageFrame(form));
    steps->addWidget(temperatureFrame(form));
    steps->addWidget(currentFrame(form));
    steps->addStretch(1);
    columns->addLayout(steps, 1);

    auto* views = new QVBoxLayout;
    auto* status = named<QTextEdit>("txtStatus", form);
    status->setReadOnly(true);
    status->setMinimumHeight(120);
    views->addWidget(status, 1);
    views->addWidget(list("lvNodes", form, 120), 2);
    views->addWidget(list("lvTemperatures", form, 100), 1);
    for (const char* oneRow : { "lvCurrent", "lvCoulomb" }) {
        QTreeWidget* single = list(oneRow, form, 48);
        single->setMaximumHeight(56);
        views->addWidget(single);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(button("cmdRefresh", form));
    buttons->addWidget(button("cmdClose", form));
    views->addLayout(buttons);
    columns->addLayout(views, 1);
    widget->resize(1000, 720);

    for (auto* field :
        { &logic.txtFirstVoltage, &logic.txtSecondVoltage, &logic.txtTemperature, &logic.txtAmps }) {
        auto* box = form->findChild<QLineEdit*>(QString::fromStdString(field->name()));
        platform::ui::Button* pressed = logic.enterButton(*field);
        new EntryRules(*box,
            { &frmCalibration::entryKey, [pressed] { pressed->click(); },
                [&logic, field] { return logic.leaveField(*field); } });
    }
    return widget;
}

std::unique_ptr<QWidget> makeVoltageWizardForm(frm470Cal& logic)
{
    auto widget = dialogWidget("frm470Cal");
    QWidget* form = widget.get();
    auto* columns = new QHBoxLayout(form);

    auto* cells = new QGridLayout;
    cells->addWidget(label(form, "<b>Measured</b>"), 0, 1);
    cells->addWidget(label(form, "<b>Actual</b>"), 0, 2);
    for (int i = 0; i < kWizardNodes; ++i) {
        const std::string index = "(" + std::to_string(i) + ")";
        cells->addWidget(named<QLabel>("lblCell" + index, form), i + 1, 0);
        auto* measured = named<QLineEdit>("txtCellVoltage" + index, form);
        measured->setMaximumWidth(90);
        measured->setFocusPolicy(Qt::NoFocus); // what the device reports: the Actual fields take the keys
        cells->addWidget(measured, i + 1, 1);
        auto* actual = named<QLineEdit>("txtVoltageCalLow" + index, form);
        actual->setMaximumWidth(90);
        cells->addWidget(actual, i + 1, 2);
        new EntryRules(*actual, { &frm470Cal::entryKey, {}, {} });
    }
    cells->setRowStretch(kWizardNodes + 1, 1);
    columns->addLayout(cells);

    auto* guide = new QVBoxLayout;
    auto* title = named<QLabel>("lblTitle", form);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.4);
    big.setBold(true);
    title->setFont(big);
    guide->addWidget(title);
    auto* stepRow = new QHBoxLayout;
    stepRow->addWidget(label(form, "Perform step:"));
    auto* step = named<QLabel>("lblGuide", form);
    step->setFont(big);
    stepRow->addWidget(step);
    stepRow->addStretch(1);
    guide->addLayout(stepRow);
    for (const char* name : { "lblInstructions(0)", "lblInstructions(1)" }) {
        auto* text = named<QLabel>(name, form);
        text->setWordWrap(true);
        guide->addWidget(text);
    }
    guide->addWidget(label(form, "Cell | Stored Calibration: Offset, Gain | New Calibration: Offset, Gain"));
    guide->addWidget(list("lvCalibration", form, 200), 1);
    auto* error = named<QLabel>("lblError", form);
    error->setWordWrap(true);
    redLabel(error);
    guide->addWidget(error);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(button("btnCalibrate", form));
    buttons->addWidget(button("btnReset", form));
    guide->addLayout(buttons);
    columns->addLayout(guide, 1);
    widget->resize(980, 640);

    logic.focusFirstEntry
        = [first = QPointer<QLineEdit>(form->findChild<QLineEdit*>("txtVoltageCalLow(0)"))] {
              if (first)
                  first->setFocus();
          };
    return widget;
}

} // namespace

std::unique_ptr<QWidget> makeCalibrationFormFor(platform::ui::Window& window)
{
    if (auto* calibration = dynamic_cast<frmCalibration*>(&window))
        return makeCalibrationForm(*calibration);
    if (auto* wizard = dynamic_cast<frm470Cal*>(&window))
        return makeVoltageWizardForm(*wizard);
    return nullptr;
}

} // namespace zv::qt
