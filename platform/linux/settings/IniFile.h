#pragma once

#include "platform/linux/common/FileLock.h"
#include "platform/linux/common/WholeFile.h"
#include "platform/linux/settings/IniText.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// A settings file on disk that several processes share: reading it, and changing one key of it
/// while everybody else who wants to is kept out by a hidden lock file beside it. Remembers
/// nothing. Main thread only.
class IniFile {
  public:
    enum class State { Missing, Unreadable, Malformed, Parsed };

    struct Reading {
        State state = State::Missing;
        QByteArray bytes;
        StoredValues values;
        FileStamp stamp;
        bool stampMayRepeat = false; ///< a later change need not show in the stamp
        QString error;               ///< why it is unreadable, in words
    };

    explicit IniFile(const QString& path);

    [[nodiscard]] QString path() const { return file_.path(); }

    [[nodiscard]] FileStamp stamp() const { return file_.stamp(); }

    /// Text that `before` knows already is not parsed again.
    [[nodiscard]] Reading read(const Reading& before) const;

    /// Makes the file's folder and those above it, for the user alone. Returns the error, or
    /// nothing.
    [[nodiscard]] std::optional<QString> createFolder() const;

    /// The lock that changing the file takes; waits up to five seconds for another writer.
    [[nodiscard]] FileLock lock() const;

    /// Stores the value, or removes the key when there is no value. `before` is what the file holds
    /// now, read since the lock was taken. Returns the error, with the file as it was, or nothing.
    [[nodiscard]] std::optional<QString> write(const FileLock& lock, const Reading& before,
                                               const QString& key,
                                               const std::optional<QString>& value) const;

    /// Renames the file to <path>.corrupt, or .corrupt.1, .2 ... where there already is one.
    [[nodiscard]] WholeFile::Aside keepAside(const FileLock& lock) const;

  private:
    const WholeFile file_;
    const QString lockPath_;
};

} // namespace quorvane
