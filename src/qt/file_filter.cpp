#include "qt/file_filter.h"

#include <QStringList>

namespace zv::qt {

QString toQtFilter(const std::string& filter)
{
    const QStringList parts = QString::fromStdString(filter).split('|');
    QStringList entries;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QString description = parts[i].trimmed();
        if (const int open = description.lastIndexOf('('); open > 0 && description.endsWith(')'))
            description = description.left(open).trimmed();
        QStringList patterns = parts[i + 1].split(';', Qt::SkipEmptyParts);
        for (auto& pattern : patterns) {
            pattern = pattern.trimmed();
            if (pattern == "*.*")
                pattern = "*";
        }
        entries << description + " (" + patterns.join(' ') + ")";
    }
    return entries.join(";;");
}

} // namespace zv::qt
