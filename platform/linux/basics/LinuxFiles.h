#pragma once

#include "platform/Files.h"

namespace quorvane {

/// The user's files on disk; the application support folder is $XDG_DATA_HOME.
class LinuxFiles final : public Files {
  public:
    [[nodiscard]] QString applicationSupportFolder() const override;
    [[nodiscard]] Contents read(const QString& path) const override;
    Written writeAtomically(const QString& path, const QByteArray& data,
                            Readers readers = Readers::AsUsual) override;
    std::optional<QString> keepAside(const QString& path) override;
    bool createFolder(const QString& path) override;
};

} // namespace quorvane
