#include "qt/icons.h"

#include <QFile>
#include <QHash>

namespace zv::qt {

QIcon iconByKey(const std::string& key)
{
    // A poll redraws the same few lamps many times: each image is read once.
    static QHash<QString, QIcon> cache;
    const QString name = QString::fromStdString(key);
    if (const auto found = cache.constFind(name); found != cache.constEnd())
        return *found;
    const QString path = ":/icons/" + name + ".svg";
    const QIcon icon = QFile::exists(path) ? QIcon(path) : QIcon();
    cache.insert(name, icon);
    return icon;
}

} // namespace zv::qt
