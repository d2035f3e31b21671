#include "qt/outputs_forms.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

constexpr int kColors = 3;

template <typename W> W* named(QWidget* parent, const QString& name)
{
    auto* widget = new W(parent);
    widget->setObjectName(name);
    return widget;
}

// The temperature option buttons inside their frame; the binder adds one radio button an item.
QGroupBox* temperatureFrame(QWidget* form)
{
    auto* frame = named<QGroupBox>(form, "fraTemperature");
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(named<QWidget>(frame, "optTemperatureUnits"));
    return frame;
}

// Each colour: its caption, a swatch drawn in the colour, and the button that opens the dialog.
QGroupBox* colorFrame(QWidget* form)
{
    auto* frame = named<QGroupBox>(form, "fraColors");
    auto* grid = new QGridLayout(frame);
    for (int i = 0; i < kColors; ++i) {
        const QString n = QString::number(i + 1);
        grid->addWidget(named<QLabel>(frame, QString("lblColor(%1)").arg(i)), i, 0);
        grid->addWidget(named<QLabel>(frame, "shpColor" + n), i, 1);
        auto* button = named<QPushButton>(frame, "picColor" + n);
        button->setAutoDefault(false);
        grid->addWidget(button, i, 2);
    }
    return frame;
}

} // namespace

std::unique_ptr<QWidget> makePreferencesForm()
{
    auto form = std::make_unique<QWidget>(nullptr, Qt::Dialog);
    form->setObjectName("frmPreferences");
    form->setWindowModality(Qt::ApplicationModal);

    auto* switches = new QVBoxLayout;
    for (const char* name : { "chkReadWrite", "chkStaticLog", "chkChargerMode", "chkAlarmMode" })
        switches->addWidget(named<QCheckBox>(form.get(), name));
    switches->addStretch();
    auto* top = new QHBoxLayout;
    top->addWidget(temperatureFrame(form.get()));
    top->addLayout(switches);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    auto* ok = named<QPushButton>(form.get(), "cmdOK");
    ok->setDefault(true);
    buttons->addWidget(ok);
    buttons->addWidget(named<QPushButton>(form.get(), "cmdCancel"));

    auto* layout = new QVBoxLayout(form.get());
    layout->addLayout(top);
    layout->addWidget(colorFrame(form.get()));
    layout->addLayout(buttons);
    return form;
}

std::unique_ptr<QWidget> makeOutputsFormFor(const std::string& windowName)
{
    if (windowName == "frmPreferences")
        return makePreferencesForm();
    return nullptr;
}

} // namespace zv::qt
