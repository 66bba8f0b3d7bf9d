#include "platform/linux/common/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

using std::chrono::nanoseconds;

// The coarsest step in which file systems count time (FAT).
constexpr std::chrono::seconds stampStep{2};

constexpr mode_t modeOfNewFiles = 0600;
constexpr mode_t permissionBits = 07777;

nanoseconds time(const timespec& value) {
    return std::chrono::seconds(value.tv_sec) + nanoseconds(value.tv_nsec);
}

FileStamp stampOf(const struct stat& status) {
    return {true,
            status.st_dev,
            status.st_ino,
            status.st_size,
            time(status.st_mtim).count(),
            time(status.st_ctim).count()};
}

std::optional<struct stat> statusOf(const QString& path) {
    struct stat status {};

    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return std::nullopt;
    }
    return status;
}

QString notRegular(const struct stat& status) {
    return S_ISDIR(status.st_mode) ? QStringLiteral("a folder has its name")
                                   : QStringLiteral("it is no regular file");
}

// Gives the file the mode, and where permitted the owner, of the one that it replaces, and makes
// sure that it is on the disk before it takes the other's place.
std::optional<QString> finish(const QString& path, const std::optional<struct stat>& replaced) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    // Not permitted to anyone but root, for whom it matters: the user must get at the file later.
    if (replaced && ::fchown(file.handle(), replaced->st_uid, replaced->st_gid) != 0 &&
        errno != EPERM) {
        return qt_error_string(errno);
    }
    const mode_t mode = replaced ? replaced->st_mode & permissionBits : modeOfNewFiles;
    if (::fchmod(file.handle(), mode) != 0 || ::fsync(file.handle()) != 0) {
        return qt_error_string(errno);
    }
    return std::nullopt;
}

// A copy is named prefix + six characters; while QSettings works on it, there may be a lock file
// and a copy of its own beside it.
bool isCopyName(const QString& name, const QString& prefix) {
    constexpr int random = 6;
    if (!name.startsWith(prefix) || name.size() < prefix.size() + random) {
        return false;
    }
    const QString rest = name.mid(prefix.size() + random);
    return rest.isEmpty() || rest == QLatin1String(".lock") ||
           (rest.startsWith(QLatin1Char('.')) && rest.size() == 1 + random);
}

bool isTaken(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

WholeFile::WholeFile(QString path) : path_(std::move(path)) {}

FileStamp WholeFile::stamp() const {
    const auto status = statusOf(path_);
    return status ? stampOf(*status) : FileStamp{};
}

WholeFile::Contents WholeFile::read() const {
    const nanoseconds before = std::chrono::system_clock::now().time_since_epoch();
    const auto found = statusOf(path_);
    if (!found) {
        const int reason = errno;
        const bool missing = reason == ENOENT || reason == ENOTDIR;
        return {missing ? State::Missing : State::Unreadable,
                {},
                {},
                false,
                missing ? QString() : qt_error_string(reason)};
    }
    // Opening a named pipe would wait for its writer.
    if (!S_ISREG(found->st_mode)) {
        return {State::Unreadable, {}, stampOf(*found), false, notRegular(*found)};
    }
    QFile file(path_);

    struct stat status {};

    if (!file.open(QIODevice::ReadOnly) || ::fstat(file.handle(), &status) != 0) {
        return {State::Unreadable, {}, stampOf(*found), false, file.errorString()};
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return {State::Unreadable, {}, stampOf(status), false, file.errorString()};
    }
    const bool mayRepeat = time(status.st_ctim) + stampStep > before;
    return {State::Read, std::move(bytes), stampOf(status), mayRepeat, {}};
}

std::optional<QString> WholeFile::replace(const QByteArray& bytes, const Edit& edit) const {
    const QString target = resolved(path_);
    // Renaming would replace it all the same, against the wish of whoever protected it.
    if (::access(QFile::encodeName(target).constData(), W_OK) != 0 && errno != ENOENT) {
        return qt_error_string(errno);
    }
    QTemporaryFile copy(copyPrefix() + QLatin1String("XXXXXX"));
    if (!copy.open() || copy.write(bytes) != bytes.size() || !copy.flush()) {
        return copy.errorString();
    }
    const QString copyPath = copy.fileName();
    copy.close();
    if (auto error = edit(copyPath)) {
        return error;
    }
    if (auto error = finish(copyPath, statusOf(target))) {
        return error;
    }
    if (std::rename(QFile::encodeName(copyPath).constData(),
                    QFile::encodeName(target).constData()) != 0) {
        return qt_error_string(errno);
    }
    copy.setAutoRemove(false);
    return std::nullopt;
}

WholeFile::Aside WholeFile::moveAside(const QString& suffix) const {
    const QString target = resolved(path_);
    const QString first = target + suffix;
    QString free = first;
    for (int number = 1; isTaken(free); ++number) {
        free = first + QLatin1Char('.') + QString::number(number);
    }
    QFile file(target);
    if (!file.rename(free)) {
        return {free, file.errorString()};
    }
    return {free, std::nullopt};
}

void WholeFile::removeLeftovers() const {
    const QFileInfo prefix(copyPrefix());
    QDir folder = prefix.dir();
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : names) {
        if (isCopyName(name, prefix.fileName())) {
            folder.remove(name);
        }
    }
}

QString WholeFile::resolved(const QString& path) {
    // As many as the kernel follows; more is a loop, which opening the file then reports.
    constexpr int mostLinks = 40;
    QFileInfo info(path);
    for (int links = 0; info.isSymLink() && links < mostLinks; ++links) {
        info.setFile(info.symLinkTarget());
    }
    return info.absoluteFilePath();
}

QString WholeFile::copyPrefix() const {
    const QFileInfo target(resolved(path_));
    return target.path() + QLatin1String("/.") + target.fileName() + QLatin1String(".tmp-");
}

} // namespace quorvane
