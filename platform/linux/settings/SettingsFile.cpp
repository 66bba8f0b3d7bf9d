#include "platform/linux/settings/SettingsFile.h"

#include "platform/Log.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

namespace quorvane {

namespace {

using State = IniFile::State;

// For how long a file that could be half written has to be left alone. Editors need a few
// milliseconds between emptying and filling it, and a change has to be seen within 200 ms.
constexpr std::chrono::milliseconds settlingTime{100};
constexpr std::chrono::milliseconds betweenLooks{5};

// For how long whoever has to know at once waits for a file that does not come to rest.
constexpr std::chrono::seconds editorPatience{1};

QStringList differingKeys(const StoredValues& before, const StoredValues& after) {
    QStringList keys;
    for (auto entry = after.cbegin(); entry != after.cend(); ++entry) {
        const auto old = before.constFind(entry.key());
        if (old == before.cend() || *old != *entry) {
            keys.append(entry.key());
        }
    }
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        if (!after.contains(entry.key())) {
            keys.append(entry.key());
        }
    }
    return keys;
}

std::optional<QString> storedText(const StoredValues& values, const QString& key) {
    const auto found = values.constFind(key);
    return found == values.cend() ? std::nullopt : std::optional(*found);
}

bool isUnset(const QVariant& value) {
    return !value.isValid() || value.typeId() == QMetaType::Nullptr;
}

} // namespace

SettingsFile::SettingsFile(const QString& path, LogSink& log)
    : log_(log), file_(path), watch_(path) {
    settle_.setSingleShot(true);
    settle_.setTimerType(Qt::PreciseTimer);
    settle_.setInterval(settlingTime);
    connect(&settle_, &QTimer::timeout, this, &SettingsFile::fileSettled);
    announceSoon_.setSingleShot(true);
    connect(&announceSoon_, &QTimer::timeout, this, &SettingsFile::announce);
    connect(&watch_, &FileWatch::touched, this, &SettingsFile::fileTouched);
    if (!watch_.error().isEmpty()) {
        log_.write(QStringLiteral("Settings file %1 cannot be watched (%2): changes made elsewhere "
                                  "are noticed late. Raise fs.inotify.max_user_instances or "
                                  "fs.inotify.max_user_watches")
                       .arg(path, watch_.error()));
    }

    // Nothing is known yet that a half-written file could take away, so only one that makes no
    // sense at all is worth waiting for.
    Reading first = file_.read(known_);
    if (first.state == State::Malformed) {
        first = readWhenSettled();
    }
    report(accept(first));
    announced_ = known_.values;
    announceSoon_.stop();
}

QVariant SettingsFile::value(const QString& key) const {
    if (known_.stampMayRepeat || file_.stamp() != known_.stamp) {
        refresh();
    }
    const auto text = storedText(known_.values, key);
    return text ? QVariant(*text) : QVariant();
}

bool SettingsFile::write(const QString& key, const QVariant& value) {
    std::optional<QString> text;
    if (!isUnset(value)) {
        text = IniText::textOf(value);
        if (!text) {
            log_.write(QStringLiteral("Setting %1 was not saved: a value of type %2 has no text")
                           .arg(key, QLatin1String(value.typeName())));
            return false;
        }
    }
    const std::optional<QString> error = store(key, text);
    if (error) {
        log_.write(
            QStringLiteral("Setting %1 was not saved in %2 (%3): make sure that this is a text "
                           "file that you may read and write, and that the disk is not full")
                .arg(key, file_.path(), *error));
    }
    announce();
    return !error;
}

bool SettingsFile::synchronize() {
    const bool done = report(accept(readWhenSettled()));
    announce();
    return done;
}

std::optional<QString> SettingsFile::store(const QString& key, const std::optional<QString>& text) {
    if (auto error = file_.createFolder()) {
        return error;
    }
    const FileLock lock = file_.lock();
    if (!lock.isHeld()) {
        return lock.error();
    }
    const Reading before = readWhenSettled();
    if (auto error = before.state == State::Malformed ? keepAside(before, lock) : accept(before)) {
        return error;
    }
    if (storedText(known_.values, key) == text) {
        return std::nullopt;
    }
    if (auto error = file_.write(lock, known_, key, text)) {
        return error;
    }
    const Reading after = file_.read(known_);
    // Otherwise somebody was faster, and the watch will tell.
    if (after.state == State::Parsed) {
        remember(after);
        if (storedText(known_.values, key) != text) {
            return QStringLiteral("it came back changed");
        }
    }
    return std::nullopt;
}

// Only what takes something away is doubted, and of that not what a finished replacement takes
// away, except everything.
bool SettingsFile::couldBeHalfWritten(const Reading& reading) const {
    switch (reading.state) {
    case State::Unreadable:
        return false;
    case State::Malformed:
        return true;
    case State::Missing:
        return known_.stamp.exists;
    case State::Parsed:
        break;
    }
    if (reading.bytes == known_.bytes) {
        return false;
    }
    const bool isCutOff = !reading.bytes.isEmpty() && !reading.bytes.endsWith('\n');
    const bool isSameInode =
        reading.stamp.device == known_.stamp.device && reading.stamp.inode == known_.stamp.inode;
    const QStringList keys = known_.values.keys();
    const bool lostSome = std::any_of(keys.cbegin(), keys.cend(), [&reading](const QString& key) {
        return !reading.values.contains(key);
    });
    return isCutOff || (lostSome && (isSameInode || reading.values.isEmpty()));
}

SettingsFile::Reading SettingsFile::readWhenSettled() const {
    const QDeadlineTimer patience(editorPatience);
    QDeadlineTimer settled(settlingTime);
    Reading reading = file_.read(known_);
    while (couldBeHalfWritten(reading) && !settled.hasExpired() && !patience.hasExpired()) {
        std::this_thread::sleep_for(betweenLooks);
        Reading again = file_.read(known_);
        if (again.stamp != reading.stamp) {
            settled.setRemainingTime(settlingTime);
        }
        reading = std::move(again);
    }
    return reading;
}

void SettingsFile::fileTouched() {
    const Reading reading = file_.read(known_);
    if (couldBeHalfWritten(reading)) {
        doubt(reading);
        return;
    }
    settle_.stop();
    report(accept(reading));
    announce();
}

void SettingsFile::fileSettled() {
    const Reading reading = file_.read(known_);
    // Saving may have gone on, and the watch not yet have told of it.
    if (couldBeHalfWritten(reading) && reading.stamp != doubted_) {
        doubt(reading);
        return;
    }
    report(accept(reading));
    announce();
}

// Asking for a value judges no file; that is left to the moment when it has settled.
void SettingsFile::refresh() const {
    const Reading reading = file_.read(known_);
    if (reading.state != State::Unreadable && !couldBeHalfWritten(reading)) {
        remember(reading);
    } else if (!settle_.isActive()) {
        doubt(reading);
    }
}

void SettingsFile::doubt(const Reading& reading) const {
    doubted_ = reading.stamp;
    settle_.start();
}

void SettingsFile::remember(const Reading& reading) const {
    known_ = reading;
    if (known_.values != announced_) {
        announceSoon_.start();
    }
}

// Takes over what the file holds. Returns why that was impossible, or nothing.
std::optional<QString> SettingsFile::accept(const Reading& reading) {
    if (reading.state == State::Unreadable) {
        giveUpOn(reading);
        return reading.error;
    }
    if (reading.state != State::Malformed) {
        remember(reading);
        return std::nullopt;
    }
    const FileLock lock = file_.lock();
    if (!lock.isHeld()) {
        giveUpOn(reading);
        return QStringLiteral("it cannot be parsed, and ") + lock.error();
    }
    // Somebody else may have kept it aside, and written a new one, before the lock was free.
    const Reading again = file_.read(known_);
    return again.state == State::Malformed ? keepAside(again, lock) : accept(again);
}

// Lets the known values stand until the file changes again.
void SettingsFile::giveUpOn(const Reading& reading) {
    known_.stamp = reading.stamp;
    known_.stampMayRepeat = false;
}

std::optional<QString> SettingsFile::keepAside(const Reading& malformed, const FileLock& lock) {
    const WholeFile::Aside aside = file_.keepAside(lock);
    if (aside.error) {
        giveUpOn(malformed);
        return QStringLiteral("it cannot be parsed, and not be kept aside as %1 (%2)")
            .arg(aside.path, *aside.error);
    }
    log_.write(QStringLiteral("Settings file %1 cannot be parsed: it was kept as %2, and default "
                              "settings are used")
                   .arg(file_.path(), aside.path));
    remember({});
    return std::nullopt;
}

// Logs a trouble once, not at every look.
bool SettingsFile::report(const std::optional<QString>& error) {
    if (error && *error != reported_) {
        log_.write(
            QStringLiteral("Settings file %1 cannot be used (%2), %3 and none is saved: move it "
                           "away, or make it a text file that you may read and write")
                .arg(file_.path(), *error,
                     known_.values.isEmpty()
                         ? QStringLiteral("default settings are used")
                         : QStringLiteral("the settings known before stay in use")));
    }
    reported_ = error.value_or(QString());
    return !error;
}

void SettingsFile::announce() {
    announceSoon_.stop();
    const QStringList keys = differingKeys(announced_, known_.values);
    if (!keys.isEmpty()) {
        announced_ = known_.values;
        Q_EMIT changed(keys);
    }
}

} // namespace quorvane
