#include "platform/linux/common/PuttingBackJournal.h"

#include "platform/linux/common/FileLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

#include <cerrno>
#include <sys/stat.h>

namespace quorvane {

namespace {

constexpr QLatin1String kindMember("kind");
constexpr QLatin1String keyMember("key");
constexpr QLatin1String foundMember("found");
constexpr QLatin1String setMember("set");
constexpr QLatin1String pidMember("pid");
constexpr QLatin1String startMember("start");

// For a process that has the journal now; a stopped one must not hold up the start of the program.
constexpr std::chrono::milliseconds lockPatience{500};

constexpr mode_t ownerOnly = 0700;
constexpr auto readableByOwner = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

QByteArray journalText(const PuttingBackJournal::Entries& entries) {
    QByteArray text;
    for (const JournalEntry& entry : entries) {
        text += journalLine(entry) + '\n';
    }
    return text;
}

} // namespace

QByteArray journalLine(const JournalEntry& entry) {
    const QJsonObject object{{kindMember, entry.kind},      {keyMember, entry.key},
                             {foundMember, entry.found},    {setMember, entry.set},
                             {pidMember, entry.writer.pid}, {startMember, entry.writer.startTime}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<JournalEntry> journalEntry(const QByteArray& line) {
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    JournalEntry entry{
        object.value(kindMember).toString(),
        object.value(keyMember).toString(),
        object.value(foundMember),
        object.value(setMember),
        {object.value(pidMember).toInteger(), object.value(startMember).toInteger()}};
    const bool isComplete = !entry.kind.isEmpty() && !entry.key.isEmpty() &&
                            !entry.found.isUndefined() && !entry.set.isUndefined() &&
                            entry.writer.pid > 0;
    return isComplete ? std::optional(std::move(entry)) : std::nullopt;
}

PuttingBackJournal::PuttingBackJournal(const QString& path, LogSink& log, const JournalWriter& self)
    : path_(path), log_(log), self_(self) {}

QString PuttingBackJournal::defaultPath() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    return folder.isEmpty() ? QString() : folder + QStringLiteral("/quorvane/putting-back.journal");
}

bool PuttingBackJournal::mayAlter(const JournalEntry& entry) const {
    return entry.writer == self_ || !entry.writer.isAlive();
}

std::optional<PuttingBackJournal::Entries> PuttingBackJournal::entries() {
    if (!QFile::exists(path_)) {
        return Entries();
    }
    const FileLock lock(path_ + QLatin1String(".lock"), lockPatience);
    if (!lock.isHeld()) {
        failed(lock.error());
        return std::nullopt;
    }
    return readAndSetUnreadableAside();
}

bool PuttingBackJournal::update(const std::function<void(Entries&)>& change) {
    if (!makeFolder()) {
        return false;
    }
    const FileLock lock(path_ + QLatin1String(".lock"), lockPatience);
    if (!lock.isHeld()) {
        return failed(lock.error());
    }
    const std::optional<Entries> before = readAndSetUnreadableAside();
    if (!before) {
        return false;
    }
    Entries after = *before;
    change(after);
    if (after != *before && !write(after)) {
        return false;
    }
    lastFailure_.clear();
    return true;
}

std::optional<PuttingBackJournal::Entries> PuttingBackJournal::readAndSetUnreadableAside() {
    QFile file(path_);
    if (!file.exists()) {
        return Entries();
    }
    if (!file.open(QIODevice::ReadOnly)) {
        failed(file.errorString());
        return std::nullopt;
    }
    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        failed(file.errorString());
        return std::nullopt;
    }
    Entries entries;
    QByteArray unreadable;
    QStringList unreadableNumbers;
    int number = 0;
    for (const QByteArray& line : text.split('\n')) {
        ++number;
        if (std::optional<JournalEntry> entry = journalEntry(line)) {
            entries.push_back(std::move(*entry));
        } else if (!line.trimmed().isEmpty()) {
            unreadable += line + '\n';
            unreadableNumbers += QString::number(number);
        }
    }
    if (unreadable.isEmpty()) {
        return entries;
    }
    if (!moveAside(unreadable) || !write(entries)) {
        return std::nullopt;
    }
    log_.write(QStringLiteral("%1: what is in line %2 cannot be read and is not put back; it has "
                              "been moved to %1.unreadable")
                   .arg(path_, unreadableNumbers.join(QStringLiteral(", "))));
    return entries;
}

bool PuttingBackJournal::moveAside(const QByteArray& lines) {
    QFile file(path_ + QStringLiteral(".unreadable"));
    const bool isDone = file.open(QIODevice::WriteOnly | QIODevice::Append) &&
                        file.setPermissions(readableByOwner) && file.write(lines) == lines.size() &&
                        file.flush();
    return isDone || failed(file.errorString());
}

bool PuttingBackJournal::write(const Entries& entries) {
    if (entries.empty()) {
        QFile file(path_);
        return !file.exists() || file.remove() || failed(file.errorString());
    }
    const QByteArray text = journalText(entries);
    QSaveFile file(path_); // forces the data to the disk before it takes the old file's place
    const bool isDone = file.open(QIODevice::WriteOnly) && file.setPermissions(readableByOwner) &&
                        file.write(text) == text.size() && file.commit();
    return isDone || failed(file.errorString());
}

bool PuttingBackJournal::makeFolder() {
    if (path_.isEmpty()) {
        return failed(QStringLiteral("the session has no run-time folder"));
    }
    const QFileInfo folder(QFileInfo(path_).path());
    if (folder.isDir()) {
        return true;
    }
    QDir().mkpath(folder.path());
    if (::mkdir(QFile::encodeName(folder.filePath()).constData(), ownerOnly) == 0 ||
        errno == EEXIST) {
        return true;
    }
    return failed(qt_error_string(errno));
}

bool PuttingBackJournal::failed(const QString& reason) {
    if (reason != lastFailure_) {
        lastFailure_ = reason;
        log_.write(QStringLiteral("The journal of what has to be put back, %1, cannot be used: %2. "
                                  "Nothing is changed that could not be put back after a crash")
                       .arg(path_, reason));
    }
    return false;
}

} // namespace quorvane
