#include "qt/binder.h"

#include "platform/ui/twips.h"
#include "qt/control_bindings.h"
#include "qt/icons.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QWindow>

#include <algorithm>

namespace zv::qt {

namespace ui = platform::ui;

namespace {

// How long a window that was just shown may take to be mapped by the window system.
constexpr int kExposeLimitMs = 500;

// A window shown before a wait is painted before the wait starts: its first expose is awaited
// (user input stays queued meanwhile) and it is painted at once.
void paintNow(QWidget& widget)
{
    QElapsedTimer clock;
    clock.start();
    while (widget.windowHandle() && !widget.windowHandle()->isExposed() && clock.elapsed() < kExposeLimitMs)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
    if (widget.isVisible())
        widget.repaint();
}

QRect pixelRect(const ui::Bounds& b)
{
    return { ui::twipsToPixels(b.left), ui::twipsToPixels(b.top), ui::twipsToPixels(b.width),
        ui::twipsToPixels(b.height) };
}

ui::Bounds twipBounds(const QRect& r)
{
    return { ui::pixelsToTwips(r.x()), ui::pixelsToTwips(r.y()), ui::pixelsToTwips(r.width()),
        ui::pixelsToTwips(r.height()) };
}

// The user's close box, moves and resizes of the window's widget go to the window logic.
class WindowEvents : public QObject {
public:
    WindowEvents(ui::Window& window, std::shared_ptr<bool> applying)
        : window_(window)
        , applying_(std::move(applying))
    {
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (*applying_)
            return false;
        auto* widget = static_cast<QWidget*>(watched);
        switch (event->type()) {
        case QEvent::Close:
            event->ignore();
            window_.requestClose();
            return true;
        case QEvent::Move:
        case QEvent::Resize:
            if (widget->isVisible())
                window_.userSetBounds(twipBounds(widget->geometry()));
            return false;
        default:
            return false;
        }
    }

private:
    ui::Window& window_;
    std::shared_ptr<bool> applying_;
};

} // namespace

struct Binder::Binding {
    ui::Window* window = nullptr;
    std::unique_ptr<QWidget> widget;
    std::unique_ptr<WindowEvents> events;
    std::vector<QMetaObject::Connection> connections;
    std::shared_ptr<bool> applying = std::make_shared<bool>(false);
    // The window object is gone: its widget may be in the middle of one of its own signals, so
    // Qt deletes it later.
    bool windowGone = false;

    ~Binding()
    {
        for (const auto& connection : connections)
            QObject::disconnect(connection);
        if (!widget)
            return;
        widget->removeEventFilter(events.get());
        if (windowGone) {
            widget.release()->deleteLater();
            return;
        }
        window->setChangeListener({});
        for (auto* control : window->controls())
            control->setChangeListener({});
    }
};

Binder::Binder()
    : iconProvider(iconByKey)
{
}
Binder::~Binder() = default;

std::vector<std::string> Binder::bind(ui::Window& window, std::unique_ptr<QWidget> widget)
{
    auto binding = std::make_unique<Binding>();
    binding->window = &window;
    binding->widget = std::move(widget);
    QWidget& form = *binding->widget;
    const BindContext context { binding->connections, binding->applying, iconProvider };

    std::vector<std::string> unbound;
    for (ui::Control* control : window.controls()) {
        const QString name = QString::fromStdString(control->name());
        QObject* target = form.findChild<QWidget*>(name);
        if (!target)
            target = form.findChild<QAction*>(name);
        if (!target)
            target = form.findChild<QObject*>(name);
        if (!target || !bindControl(*control, *target, context))
            unbound.push_back(control->name());
    }

    {
        ApplyingGuard guard(*binding->applying);
        form.setWindowTitle(QString::fromStdString(window.caption()));
        if (window.bounds().width > 0)
            form.setGeometry(pixelRect(window.bounds()));
        form.setVisible(window.visible());
    }
    QWidget* target = &form;
    auto flag = binding->applying;
    window.setChangeListener([this, &window, target, flag](const ui::ChangeEvent& e) {
        if (e.what == ui::Change::Destroyed) {
            release(&window);
            return;
        }
        ApplyingGuard guard(*flag);
        switch (e.what) {
        case ui::Change::Caption:
            target->setWindowTitle(QString::fromStdString(window.caption()));
            break;
        case ui::Change::Geometry:
            target->setGeometry(pixelRect(window.bounds()));
            break;
        case ui::Change::Visible:
            target->setVisible(window.visible());
            if (window.visible()) {
                target->raise();
                paintNow(*target);
            }
            break;
        case ui::Change::Value:
            target->setWindowFlag(Qt::WindowStaysOnTopHint, window.alwaysOnTop());
            target->setVisible(window.visible());
            break;
        default:
            break;
        }
    });
    binding->events = std::make_unique<WindowEvents>(window, binding->applying);
    form.installEventFilter(binding->events.get());
    bindings_.push_back(std::move(binding));
    return unbound;
}

QWidget* Binder::widgetOf(const ui::Window& window) const
{
    const auto it = std::find_if(
        bindings_.begin(), bindings_.end(), [&](const auto& b) { return b->window == &window; });
    return it == bindings_.end() ? nullptr : (*it)->widget.get();
}

void Binder::release(const ui::Window* window)
{
    for (auto& b : bindings_) {
        if (b->window == window)
            b->windowGone = true;
    }
    std::erase_if(bindings_, [&](const auto& b) { return b->window == window; });
}

} // namespace zv::qt
