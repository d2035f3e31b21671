#include "qt/qt_dialogs.h"

#include "qt/file_filter.h"
#include "qt/qt_colors.h"

#include <QColorDialog>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSystemTrayIcon>

namespace zv::qt {

using platform::Answer;
using platform::Buttons;
using platform::Icon;

namespace {

QString qs(const std::string& s)
{
    return QString::fromStdString(s);
}

QMessageBox::StandardButtons standardButtons(Buttons buttons)
{
    switch (buttons) {
    case Buttons::OK:
        return QMessageBox::Ok;
    case Buttons::OKCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case Buttons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::AbortRetryIgnore:
        return QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
    case Buttons::RetryCancel:
        return QMessageBox::Retry | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::Icon boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

Answer answerOf(int button, Buttons buttons)
{
    switch (button) {
    case QMessageBox::Ok:
        return Answer::OK;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    case QMessageBox::Abort:
        return Answer::Abort;
    case QMessageBox::Retry:
        return Answer::Retry;
    case QMessageBox::Ignore:
        return Answer::Ignore;
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    default:
        // Closed without a button: what the box's escape would give.
        return buttons == Buttons::OK ? Answer::OK : buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
    }
}

QString startPath(const platform::FileDialogOptions& options)
{
    if (options.fileName.empty())
        return qs(options.folder);
    if (options.folder.empty())
        return qs(options.fileName);
    return QDir(qs(options.folder)).filePath(qs(options.fileName));
}

QString desktopIconName(Icon icon)
{
    switch (icon) {
    case Icon::Critical:
        return "dialog-error";
    case Icon::Exclamation:
        return "dialog-warning";
    case Icon::Question:
        return "dialog-question";
    default:
        return "dialog-information";
    }
}

QSystemTrayIcon::MessageIcon trayIcon(Icon icon)
{
    switch (icon) {
    case Icon::Critical:
        return QSystemTrayIcon::Critical;
    case Icon::Exclamation:
        return QSystemTrayIcon::Warning;
    case Icon::None:
        return QSystemTrayIcon::NoIcon;
    default:
        return QSystemTrayIcon::Information;
    }
}

} // namespace

QtDialogs::QtDialogs(QWidget* parent)
    : parent_(parent)
{
}

Answer QtDialogs::messageBox(const std::string& text, Buttons buttons, Icon icon, const std::string& title)
{
    QMessageBox box(boxIcon(icon), qs(title), qs(text), standardButtons(buttons), parent_);
    return answerOf(box.exec(), buttons);
}

std::optional<std::string> QtDialogs::inputBox(
    const std::string& prompt, const std::string& title, const std::string& defaultText)
{
    bool ok = false;
    const QString text
        = QInputDialog::getText(parent_, qs(title), qs(prompt), QLineEdit::Normal, qs(defaultText), &ok);
    if (!ok)
        return std::nullopt;
    return text.toStdString();
}

std::vector<std::string> QtDialogs::openFiles(const platform::FileDialogOptions& options)
{
    QStringList chosen;
    if (options.multiSelect) {
        chosen = QFileDialog::getOpenFileNames(
            parent_, qs(options.title), startPath(options), toQtFilter(options.filter));
    } else if (const QString one = QFileDialog::getOpenFileName(
                   parent_, qs(options.title), startPath(options), toQtFilter(options.filter));
               !one.isEmpty()) {
        chosen << one;
    }
    std::vector<std::string> paths;
    for (const auto& path : chosen)
        paths.push_back(path.toStdString());
    return paths;
}

std::optional<std::string> QtDialogs::saveFile(const platform::FileDialogOptions& options)
{
    const QString path = QFileDialog::getSaveFileName(
        parent_, qs(options.title), startPath(options), toQtFilter(options.filter));
    if (path.isEmpty())
        return std::nullopt;
    return path.toStdString();
}

std::optional<platform::Rgb> QtDialogs::chooseColor(platform::Rgb initial)
{
    const QColor color = QColorDialog::getColor(toQColor(initial), parent_);
    if (!color.isValid())
        return std::nullopt;
    return fromQColor(color);
}

bool QtDialogs::printText(const std::string& documentName, const std::vector<std::string>& lines)
{
    if (QPrinterInfo::defaultPrinter().isNull())
        return false;
    QPrinter printer(QPrinterInfo::defaultPrinter());
    printer.setDocName(qs(documentName));
    QPainter painter;
    if (!painter.begin(&printer))
        return false;
    const int lineHeight = painter.fontMetrics().lineSpacing();
    const int pageHeight = painter.viewport().height();
    int y = lineHeight;
    for (const auto& line : lines) {
        if (y > pageHeight) {
            if (!printer.newPage())
                return false;
            y = lineHeight;
        }
        painter.drawText(0, y, qs(line));
        y += lineHeight;
    }
    return painter.end();
}

void QtDialogs::notify(const std::string& title, const std::string& text, Icon icon)
{
    if (tray_ && QSystemTrayIcon::isSystemTrayAvailable() && tray_->isVisible()) {
        tray_->showMessage(qs(title), qs(text), trayIcon(icon));
        return;
    }
    notifyDesktop(title, text, icon);
}

void QtDialogs::notifyDesktop(const std::string& title, const std::string& text, Icon icon)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        if (fallbackNotify)
            fallbackNotify(title, text);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall("org.freedesktop.Notifications",
        "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "Notify");
    call << QString("Zentavia") << 0u << desktopIconName(icon) << qs(title) << qs(text) << QStringList()
         << QVariantMap() << -1;
    // The answer comes later; a missing service sends the text to the fallback then.
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), nullptr);
    auto fallback = fallbackNotify;
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
        [watcher, fallback, title, text](QDBusPendingCallWatcher*) {
            if (watcher->isError() && fallback)
                fallback(title, text);
            watcher->deleteLater();
        });
}

} // namespace zv::qt
