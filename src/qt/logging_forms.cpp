#include "qt/logging_forms.h"

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTreeWidget>
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

// A row dragged from one list and dropped on the other moves as a double click on it would: the
// drop raises the source list's double click for its current row, so the window's rules apply.
class DropAsDoubleClick : public QObject {
public:
    DropAsDoubleClick(QTreeWidget* target, QTreeWidget* source)
        : QObject(target)
        , target_(target)
        , source_(source)
    {
        target->setDragEnabled(true);
        target->setAcceptDrops(true);
        target->viewport()->setAcceptDrops(true);
        target->setDragDropMode(QAbstractItemView::DragDrop);
        target->setDefaultDropAction(Qt::IgnoreAction);
        target->viewport()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched != target_->viewport())
            return false;
        if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
            auto* drag = static_cast<QDropEvent*>(event);
            if (drag->source() != source_)
                return true;
            drag->setDropAction(Qt::IgnoreAction);
            drag->accept();
            return true;
        }
        if (event->type() == QEvent::Drop) {
            auto* drop = static_cast<QDropEvent*>(event);
            if (drop->source() == source_ && source_->currentItem())
                Q_EMIT source_->itemDoubleClicked(source_->currentItem(), 0);
            drop->setDropAction(Qt::IgnoreAction);
            drop->accept();
            return true;
        }
        return false;
    }

private:
    QTreeWidget* target_;
    QTreeWidget* source_;
};

QTreeWidget* wizardList(QWidget* parent, const char* name)
{
    auto* tree = named<QTreeWidget>(parent, name);
    tree->setSelectionMode(QAbstractItemView::SingleSelection);
    tree->setRootIsDecorated(false);
    tree->setMinimumSize(300, 360);
    // The second column holds the parameter's key: never shown.
    QObject::connect(tree->model(), &QAbstractItemModel::columnsInserted, tree, [tree] {
        if (tree->columnCount() > 1)
            tree->setColumnHidden(1, true);
    });
    QObject::connect(tree->model(), &QAbstractItemModel::headerDataChanged, tree, [tree] {
        if (tree->columnCount() > 1)
            tree->setColumnHidden(1, true);
    });
    return tree;
}

std::unique_ptr<QWidget> makeLogWizardForm()
{
    auto form = dialog("frmLogWizard");
    auto* layout = new QVBoxLayout(form.get());
    auto* bar = new QMenuBar(form.get());
    auto* file = bar->addMenu(QString());
    file->setObjectName("mnuFile");
    file->addAction(QString())->setObjectName("mnuExit");
    auto* command = bar->addMenu(QString());
    command->setObjectName("mnuCommand");
    command->addAction(QString())->setObjectName("mnuReset");
    command->addAction(QString())->setObjectName("mnuGenerateFile");
    layout->setMenuBar(bar);

    auto* page = new QHBoxLayout;
    auto* back = named<QPushButton>(form.get(), "btnNavigate(0)");
    auto* forward = named<QPushButton>(form.get(), "btnNavigate(1)");
    for (auto* button : { back, forward }) {
        button->setAutoDefault(false);
        button->setFixedWidth(40);
    }
    auto* tab = named<QLabel>(form.get(), "lblTab");
    tab->setAlignment(Qt::AlignCenter);
    QFont bold = tab->font();
    bold.setBold(true);
    tab->setFont(bold);
    page->addWidget(back);
    page->addWidget(tab, 1);
    page->addWidget(forward);
    layout->addLayout(page);

    auto* lists = new QHBoxLayout;
    auto* source = wizardList(form.get(), "ListSource");
    auto* destination = wizardList(form.get(), "ListDestination");
    new DropAsDoubleClick(destination, source);
    new DropAsDoubleClick(source, destination);
    lists->addWidget(source);
    lists->addWidget(destination);
    layout->addLayout(lists);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(named<QLabel>(form.get(), "lblCounter"));
    buttons->addStretch();
    for (const char* name : { "btnReset", "btnGenerateFile" }) {
        auto* button = named<QPushButton>(form.get(), name);
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    layout->addLayout(buttons);
    return form;
}

} // namespace

std::unique_ptr<QWidget> makeLoggingFormFor(const std::string& windowName)
{
    if (windowName == "frmLogging")
        return makeLoggingForm();
    if (windowName == "frmLogComment")
        return makeCommentForm();
    if (windowName == "frmLogWizard")
        return makeLogWizardForm();
    return nullptr;
}

} // namespace zv::qt
