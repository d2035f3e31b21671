#include "platform/qt/qt_desktop.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace zv::platform {

QUrl externalUrl(const std::string& pathOrUrl)
{
    const QString text = QString::fromStdString(pathOrUrl);
    // Two letters at least, so that a drive-like "C:" prefix never counts as a scheme.
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]+:"));
    if (!text.startsWith(QLatin1Char('/')) && scheme.match(text).hasMatch())
        return QUrl(text);
    return QUrl::fromLocalFile(QDir::current().absoluteFilePath(text));
}

bool QtDesktop::openExternal(const std::string& pathOrUrl)
{
    const QUrl url = externalUrl(pathOrUrl);
    if (url.isLocalFile() && !QFileInfo::exists(url.toLocalFile()))
        return false;
    return QDesktopServices::openUrl(url);
}

} // namespace zv::platform
