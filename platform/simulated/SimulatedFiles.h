#pragma once

#include "platform/Files.h"

#include <QMap>
#include <QSet>
#include <QStringList>

namespace quorvane {

/// A disk in memory, empty at first but for the application support folder and the one
/// for temporary files.
class SimulatedFiles final : public Files {
  public:
    [[nodiscard]] QString applicationSupportFolder() const override;
    [[nodiscard]] Contents read(const QString& path) const override;
    Written writeAtomically(const QString& path, const QByteArray& data,
                            Readers readers = Readers::AsUsual) override;
    std::optional<QString> keepAside(const QString& path) override;
    bool createFolder(const QString& path) override;

    /// Puts a file there, with its folder.
    void put(const QString& path, const QByteArray& data);

    /// From now on the file exists and cannot be read.
    void failReading(const QString& path) { unreadable_.insert(path); }

    /// From now on nothing can be written, created or moved.
    void setReadOnly(bool readOnly) { readOnly_ = readOnly; }

    [[nodiscard]] QMap<QString, QByteArray> files() const { return files_; }

    /// Every path that was written, in order.
    [[nodiscard]] const QStringList& writes() const { return writes_; }

    /// Whether everybody may read the file, whatever the user lets others read.
    [[nodiscard]] bool isForEverybody(const QString& path) const { return open_.contains(path); }

  private:
    QMap<QString, QByteArray> files_;
    QSet<QString> folders_;
    QSet<QString> unreadable_;
    QSet<QString> open_;
    QStringList writes_;
    bool readOnly_ = false;
};

} // namespace quorvane
