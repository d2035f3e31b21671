#include "qt/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
#include <QStandardPaths>

namespace zv::qt {

SingleInstance::SingleInstance(const std::string& settingsPath)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath();
    const QByteArray key
        = QCryptographicHash::hash(QByteArray::fromStdString(settingsPath), QCryptographicHash::Sha1)
              .toHex()
              .left(12);
    lock_ = std::make_unique<QLockFile>(folder + "/zentavia-" + QString::fromLatin1(key) + ".lock");
    lock_->setStaleLockTime(0);
}

bool SingleInstance::otherInstanceRuns()
{
    return !lock_->tryLock(0);
}

} // namespace zv::qt
