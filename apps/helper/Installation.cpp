#include "apps/helper/Installation.h"

#include "platform/linux/common/HelperNames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <utility>

namespace quorvane {

namespace {

constexpr auto readableByAll = QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                               QFileDevice::ReadGroup | QFileDevice::ReadOther;
constexpr auto executableByAll =
    readableByAll | QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther;

QString reasonFor(const QString& path, const QString& reason) {
    return QStringLiteral("%1: %2").arg(path, reason);
}

} // namespace

Installation::Installation(QString root, QString executable)
    : root_(std::move(root)), executable_(std::move(executable)) {}

QList<InstallationFile> Installation::files() const {
    return installationFiles(helpernames::installedFolder);
}

QString Installation::executablePath() const {
    return helpernames::installedFolder + QLatin1Char('/') + helpernames::label;
}

bool Installation::isPackaged() const {
    return QFile::exists(root_ + helpernames::packagedFolder + QLatin1Char('/') +
                         helpernames::label);
}

bool Installation::isInstalled() const {
    return QFile::exists(root_ + executablePath());
}

std::optional<QString> Installation::install() const {
    if (isPackaged()) {
        return QStringLiteral("the distribution's package has installed the helper already");
    }
    std::optional<QString> error = writeAll();
    if (error) {
        [[maybe_unused]] const auto rest = {removeService(), removeFiles()};
    }
    return error;
}

// The bus's file last: from then on the helper can be started.
std::optional<QString> Installation::writeAll() const {
    QFile executable(executable_);
    if (!executable.open(QIODevice::ReadOnly)) {
        return reasonFor(executable_, executable.errorString());
    }
    std::optional<QString> error = write(executablePath(), executable.readAll(), true);
    for (const InstallationFile& each : files()) {
        if (!error) {
            error = write(each.path, each.contents, false);
        }
    }
    return error;
}

std::optional<QString> Installation::write(const QString& path, const QByteArray& contents,
                                           bool isProgram) const {
    const QString place = root_ + path;
    if (!QDir().mkpath(QFileInfo(place).path())) {
        return reasonFor(path, QStringLiteral("its folder cannot be made"));
    }
    QSaveFile file(place);
    const bool isDone =
        file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() &&
        file.setPermissions(isProgram ? executableByAll : readableByAll) && file.commit();
    return isDone ? std::nullopt : std::optional(reasonFor(path, file.errorString()));
}

std::optional<QString> Installation::removeService() const {
    return remove(files().constLast().path);
}

std::optional<QString> Installation::removeFiles() const {
    std::optional<QString> error = remove(executablePath());
    for (const InstallationFile& each : files()) {
        // polkit's file has one place for both; a helper without it would be refused everything.
        const bool isOfPackage = isPackaged() && each.path.startsWith(QLatin1String("/usr/share/"));
        const std::optional<QString> next = isOfPackage ? std::nullopt : remove(each.path);
        error = error ? error : next;
    }
    // From the innermost; those that are not empty stay.
    for (const QString& extension :
         {QStringLiteral("/CPUTune.kext"), QStringLiteral("/DisableTurboBoost.64bits.kext")}) {
        QDir().rmdir(root_ + helpernames::installedFolder + extension +
                     QStringLiteral("/Contents"));
        QDir().rmdir(root_ + helpernames::installedFolder + extension);
    }
    QDir().rmdir(root_ + helpernames::installedFolder);
    return error;
}

std::optional<QString> Installation::remove(const QString& path) const {
    QFile file(root_ + path);
    const QFileInfo info(file);
    const bool isThere = info.exists() || info.isSymLink();
    return !isThere || file.remove() ? std::nullopt
                                     : std::optional(reasonFor(path, file.errorString()));
}

} // namespace quorvane
