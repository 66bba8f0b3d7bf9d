#include "platform/linux/basics/LinuxFiles.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>

namespace quorvane {

namespace {

Files::Written writingFailed(const QString& path, const QString& reason) {
    return {path + QLatin1String(": ") + reason};
}

// Not QSaveFile, which writes to where a link leads. A rename replaces the link itself, and the
// mode is set on the new file's own descriptor before it has its name, so nobody ever finds it
// without.
Files::Written writeForEverybody(const QString& path, const QByteArray& data) {
    QTemporaryFile file(path + QStringLiteral(".XXXXXX"));
    const bool isWritten = file.open() && file.write(data) == data.size() && file.flush() &&
                           file.setPermissions(QFile::ReadOwner | QFile::WriteOwner |
                                               QFile::ReadGroup | QFile::ReadOther);
    if (!isWritten) {
        return writingFailed(path, file.errorString());
    }
    if (::rename(QFile::encodeName(file.fileName()).constData(),
                 QFile::encodeName(path).constData()) != 0) {
        return writingFailed(path, qt_error_string(errno));
    }
    file.setAutoRemove(false);
    return {};
}

} // namespace

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

Files::Written LinuxFiles::writeAtomically(const QString& path, const QByteArray& data,
                                           Readers readers) {
    if (readers == Readers::Everybody) {
        return writeForEverybody(path, data);
    }
    QSaveFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
    return isWritten ? Written() : writingFailed(path, file.errorString());
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
