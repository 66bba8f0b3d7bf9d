#pragma once

#include "platform/Files.h"

#include <QMap>
#include <QSet>

namespace quorvane {

/// A disk in memory, empty at first but for the application support folder.
class SimulatedFiles final : public Files {
  public:
    [[nodiscard]] QString applicationSupportFolder() const override;
    [[nodiscard]] Contents read(const QString& path) const override;
    bool writeAtomically(const QString& path, const QByteArray& data) override;
    std::optional<QString> keepAside(const QString& path) override;
    bool createFolder(const QString& path) override;

    /// Puts a file there, with its folder.
    void put(const QString& path, const QByteArray& data);

    /// From now on the file exists and cannot be read.
    void failReading(const QString& path) { unreadable_.insert(path); }

    /// From now on nothing can be written, created or moved.
    void setReadOnly(bool readOnly) { readOnly_ = readOnly; }

    [[nodiscard]] QMap<QString, QByteArray> files() const { return files_; }

  private:
    QMap<QString, QByteArray> files_;
    QSet<QString> folders_;
    QSet<QString> unreadable_;
    bool readOnly_ = false;
};

} // namespace quorvane
