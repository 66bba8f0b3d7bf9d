#pragma once

#include "apps/helper/InstallationFiles.h"

#include <QString>

#include <optional>

namespace quorvane {

/// The helper's files on the machine. Installing copies the running executable and writes the files
/// that it carries; nothing else of the bundle that it came from is read. Only for root. Each
/// function returns the error, or nothing.
class Installation {
  public:
    /// `root` is put in front of every path: empty for the machine itself. `executable` is copied.
    Installation(QString root, QString executable);

    /// Whether a distribution's package has brought the helper: then that is the one to use.
    [[nodiscard]] bool isPackaged() const;

    /// Whether there is a helper that `install` has brought, be it beside a packaged one.
    [[nodiscard]] bool isInstalled() const;

    /// Failing, it removes again what it has written.
    [[nodiscard]] std::optional<QString> install() const;

    /// The service's own file first, so that the bus starts no helper any more.
    [[nodiscard]] std::optional<QString> removeService() const;

    /// All other files, but none of a package's. What is not there counts as removed.
    [[nodiscard]] std::optional<QString> removeFiles() const;

  private:
    [[nodiscard]] QString executablePath() const;
    [[nodiscard]] std::optional<QString> write(const QString& path, const QByteArray& contents,
                                               bool isProgram) const;
    [[nodiscard]] std::optional<QString> writeAll() const;
    [[nodiscard]] std::optional<QString> remove(const QString& path) const;
    [[nodiscard]] QList<InstallationFile> files() const;

    QString root_;
    QString executable_;
};

} // namespace quorvane
