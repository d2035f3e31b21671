#include "qt/plot_panel.h"

#include "monitor/frm_main.h"

#include <qcustomplot.h>

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSplitter>
#include <QTabBar>
#include <QVBoxLayout>

#include <array>

namespace zv::qt {

namespace {

QString qs(const std::string& s)
{
    return QString::fromStdString(s);
}

QWidget* plotPanel(const frmMain& window, QWidget* parent)
{
    auto* panel = new QWidget(parent);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(4, 0, 4, 4);
    auto* row = new QHBoxLayout;
    for (const auto& plotSwitch : window.iSwitchLed) {
        auto* box = new QCheckBox(panel);
        box->setObjectName(qs(plotSwitch.name()));
        row->addWidget(box);
    }
    row->addStretch();
    layout->addLayout(row);
    // The buttons on a row of their own, so that a narrow window still shows all of them.
    row = new QHBoxLayout;
    for (const auto* button : { &window.cmdToggleGridY, &window.cmdResetPlot, &window.cmdToggleTabView,
             &window.cmdZoomx, &window.cmdZoomy, &window.cmdTrackx, &window.cmdTracky }) {
        auto* push = new QPushButton(panel);
        push->setObjectName(qs(button->name()));
        row->addWidget(push);
    }
    row->addStretch();
    layout->addLayout(row);
    auto* plot = new QCustomPlot(panel);
    plot->setObjectName(qs(window.iPlot.name()));
    plot->setMinimumHeight(160);
    layout->addWidget(plot, 1);
    return panel;
}

// Follows the panels that the expanded view hides: a tab strip takes its list stack along, and
// the splitter gives the plot the room while all of them are away.
class ExpandedViewFilter : public QObject {
public:
    ExpandedViewFilter(QSplitter& splitter, std::vector<QWidget*> watched)
        : QObject(&splitter)
        , splitter_(splitter)
        , watched_(std::move(watched))
    {
        for (QWidget* widget : watched_)
            widget->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        const bool shown = event->type() == QEvent::ShowToParent;
        if (!shown && event->type() != QEvent::HideToParent)
            return false;
        if (auto* bar = qobject_cast<QTabBar*>(object); bar && bar->parentWidget())
            bar->parentWidget()->setVisible(shown);
        const bool expanded
            = std::ranges::all_of(watched_, [](const QWidget* widget) { return widget->isHidden(); });
        splitter_.setSizes(expanded ? QList<int> { 2000, 3000 } : QList<int> { 3000, 2000 });
        return false;
    }

private:
    QSplitter& splitter_;
    std::vector<QWidget*> watched_;
};

} // namespace

QWidget* plotArea(const frmMain& window, QWidget* columns, QWidget* parent)
{
    auto* split = new QSplitter(Qt::Vertical, parent);
    split->addWidget(columns);
    split->addWidget(plotPanel(window, split));
    split->setChildrenCollapsible(false);
    std::vector<QWidget*> watched;
    for (const auto* control :
        std::array<const platform::ui::Control*, 3> { &window.SSTab, &window.SSTab1, &window.fraStatus }) {
        if (auto* widget = columns->findChild<QWidget*>(qs(control->name())))
            watched.push_back(widget);
    }
    new ExpandedViewFilter(*split, std::move(watched));
    return split;
}

} // namespace zv::qt
