#include "platform/linux/settings/IniFile.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace quorvane {

namespace {

// A writer needs milliseconds; one that takes longer is stopped, or waits for its disk.
constexpr std::chrono::seconds lockPatience{5};

constexpr QFileDevice::Permissions privateFolder =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

QString lockPathFor(const QString& path) {
    const QFileInfo file(path);
    return file.path() + QLatin1String("/.") + file.fileName() + QLatin1String(".lock");
}

bool makeFolder(const QString& path) {
    const QFileInfo folder(path);
    return folder.isDir() || (makeFolder(folder.path()) &&
                              (QDir().mkdir(path, privateFolder) || QFileInfo(path).isDir()));
}

} // namespace

IniFile::IniFile(const QString& path) : file_(path), lockPath_(lockPathFor(path)) {}

IniFile::Reading IniFile::read(const Reading& before) const {
    WholeFile::Contents contents = file_.read();
    Reading reading;
    reading.stamp = contents.stamp;
    reading.stampMayRepeat = contents.stampMayRepeat;
    if (contents.state == WholeFile::State::Missing) {
        return reading;
    }
    reading.state = State::Unreadable;
    reading.error = contents.error;
    if (contents.state == WholeFile::State::Unreadable) {
        return reading;
    }
    reading.bytes = std::move(contents.bytes);
    if (before.state == State::Parsed && before.bytes == reading.bytes) {
        reading.state = before.state;
        reading.values = before.values;
        reading.error.clear();
        return reading;
    }
    IniText::Parsed parsed = IniText::parse(reading.bytes);
    if (parsed.outcome == IniText::Outcome::Failed) {
        reading.error = parsed.error;
        return reading;
    }
    reading.state = parsed.outcome == IniText::Outcome::Parsed ? State::Parsed : State::Malformed;
    reading.values = std::move(parsed.values);
    return reading;
}

std::optional<QString> IniFile::createFolder() const {
    const QString folder = QFileInfo(file_.path()).path();
    if (!makeFolder(folder)) {
        return QStringLiteral("the folder %1 cannot be created").arg(folder);
    }
    return std::nullopt;
}

FileLock IniFile::lock() const {
    return {lockPath_, lockPatience};
}

std::optional<QString> IniFile::write(const FileLock& /*lock*/, const Reading& before,
                                      const QString& key,
                                      const std::optional<QString>& value) const {
    file_.removeLeftovers();
    return file_.replace(before.bytes, [&key, &value](const QString& copy) {
        return IniText::edit(copy, key, value);
    });
}

WholeFile::Aside IniFile::keepAside(const FileLock& /*lock*/) const {
    return file_.moveAside(QStringLiteral(".corrupt"));
}

} // namespace quorvane
