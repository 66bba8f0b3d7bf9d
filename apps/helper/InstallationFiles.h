#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace quorvane {

/// One file of the helper on the machine, besides its executable.
struct InstallationFile {
    QString path;
    QByteArray contents;
};

/// The files of an installation whose executable lies in `folder`: the two extensions, and what
/// tells the bus, the service manager and polkit about the helper. What they hold is part of the
/// executable, so that an administrator who has approved of that has approved of them.
[[nodiscard]] QList<InstallationFile> installationFiles(const QString& folder);

} // namespace quorvane
