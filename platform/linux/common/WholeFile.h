#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace quorvane {

/// What tells two states of a file apart without reading it. Times are in nanoseconds.
struct FileStamp {
    bool exists = false;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modified = 0;
    std::int64_t statusChanged = 0;

    bool operator==(const FileStamp&) const = default;
};

/// A file that is read whole and replaced whole: readers see the old contents or the new ones,
/// also when the writer is killed or the power fails. Where it is a symbolic link, all of this
/// happens to the link's target and beside it. Any thread; writers must exclude each other.
class WholeFile {
  public:
    enum class State { Missing, Unreadable, Read };

    struct Contents {
        State state = State::Missing;
        QByteArray bytes;
        FileStamp stamp;
        /// The file changed so lately that a further change need not show in its stamp, because
        /// file systems count time in steps.
        bool stampMayRepeat = false;
        QString error; ///< why it is unreadable, in words
    };

    /// Changes the file at the given path. Returns the error, or nothing.
    using Edit = std::function<std::optional<QString>(const QString& path)>;

    explicit WholeFile(QString path);

    [[nodiscard]] QString path() const { return path_; }

    [[nodiscard]] FileStamp stamp() const;

    /// Anything but a regular file counts as unreadable.
    [[nodiscard]] Contents read() const;

    /// Lets `edit` change a copy that starts with `bytes`, and puts the copy in the file's place,
    /// with the owner and mode that the file has. The mode of a new file is 0600. Returns the
    /// error, with the old file as it was, or nothing.
    [[nodiscard]] std::optional<QString> replace(const QByteArray& bytes, const Edit& edit) const;

    struct Aside {
        QString path;
        std::optional<QString> error;
    };

    /// Renames the file to its name with `suffix`, or, as long as that name is taken, with
    /// `suffix`.1, .2 ...
    [[nodiscard]] Aside moveAside(const QString& suffix) const;

    /// Removes the copies that killed writers left. The caller makes sure that nobody is writing.
    void removeLeftovers() const;

    /// `path` with symbolic links followed in its last part, whether or not the target exists.
    [[nodiscard]] static QString resolved(const QString& path);

  private:
    [[nodiscard]] QString copyPrefix() const;

    QString path_;
};

} // namespace quorvane
