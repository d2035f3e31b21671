#include "qt/status_panes_panel.h"

#include "monitor/frm_main.h"
#include "qt/list_widgets.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace zv::qt {

namespace {

// Room for the header and one row, so that the FET row never takes space from the grids.
constexpr int kFetRowHeight = 56;

} // namespace

QWidget* statusPanesPanel(const frmMain& window, QWidget* parent)
{
    auto* panel = new QWidget(parent);
    auto* layout = new QVBoxLayout(panel);
    auto* fet = reportList(window.lvFET.name(), panel);
    fet->setFixedHeight(kFetRowHeight);
    fet->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    layout->addWidget(fet);
    auto* flags = tabbedLists(window.SSTabFlags, window.lvFlags, panel);
    // Column titles of the safety grid are clickable: they explain their bits.
    for (auto* list : flags->findChildren<QTreeWidget*>())
        list->header()->setSectionsClickable(true);
    layout->addWidget(flags, 3);
    auto* frame = named<QGroupBox>(window.fraStatus.name(), panel);
    auto* frameLayout = new QVBoxLayout(frame);
    // The bit list has no column titles: the frame's caption says what it lists.
    auto* bits = reportList(window.lvStatus.name(), frame);
    bits->setHeaderHidden(true);
    frameLayout->addWidget(bits);
    layout->addWidget(frame, 2);
    return panel;
}

} // namespace zv::qt
