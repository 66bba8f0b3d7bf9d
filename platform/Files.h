#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// The user's files. Paths are absolute. Main thread only.
class Files {
  public:
    virtual ~Files() = default;

    struct Contents {
        std::optional<QByteArray> data; ///< nothing when the file could not be read
        bool exists = true;             ///< false when there is no such file
        QString error;                  ///< why, in words, when it could not be read
    };

    /// Who may read a file that is written.
    enum class Readers {
        AsUsual,   ///< whoever may read the file that it replaces; of a new one, whom the user lets
        Everybody, ///< also another user's service, however private the user keeps his files
    };

    /// What became of writing: true when it was done.
    struct Written {
        QString error; ///< why not, in words; empty when it was done

        [[nodiscard]] explicit operator bool() const { return error.isEmpty(); }
    };

    /// The folder in which applications keep the user's data, without a trailing slash.
    [[nodiscard]] virtual QString applicationSupportFolder() const = 0;

    [[nodiscard]] virtual Contents read(const QString& path) const = 0;

    /// Replaces the file in one step: readers see the old contents or the new ones. When that
    /// fails, the old file is as it was. A link in its place is followed, except with
    /// `Readers::Everybody`: such files lie where anybody may put a link to one of the user's.
    virtual Written writeAtomically(const QString& path, const QByteArray& data,
                                    Readers readers = Readers::AsUsual) = 0;

    /// Moves a file that makes no sense to the program out of the way, beside itself under a name
    /// that is free, so that it is not lost when a new one is written. Returns where it is now, or
    /// nothing when it is still in its place.
    virtual std::optional<QString> keepAside(const QString& path) = 0;

    /// Makes the folder and those above it; one that exists counts as made.
    virtual bool createFolder(const QString& path) = 0;
};

} // namespace quorvane
