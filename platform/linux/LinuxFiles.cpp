#include "platform/linux/LinuxFiles.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace quorvane {

QString LinuxFiles::applicationSupportFolder() const {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

Files::Contents LinuxFiles::read(const QString& path) const {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {std::nullopt, file.exists(), path + QLatin1String(": ") + file.errorString()};
    }
    QByteArray data = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return {std::nullopt, file.exists(), path + QLatin1String(": ") + file.errorString()};
    }
    return {std::move(data), true, {}};
}

bool LinuxFiles::writeAtomically(const QString& path, const QByteArray& data) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size()) {
        return false;
    }
    return file.commit();
}

std::optional<QString> LinuxFiles::keepAside(const QString& path) {
    QString aside = path + QLatin1String(".corrupt");
    for (int number = 1; QFile::exists(aside); ++number) {
        aside = QStringLiteral("%1.corrupt.%2").arg(path).arg(number);
    }
    return QFile::rename(path, aside) ? std::optional(aside) : std::nullopt;
}

bool LinuxFiles::createFolder(const QString& path) {
    return QDir().mkpath(path);
}

} // namespace quorvane
