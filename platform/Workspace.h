#pragma once

#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>

namespace quorvane {

/// The applications that run in the user's session. Main thread only.
class Workspace {
  public:
    virtual ~Workspace() = default;

    /// The process id of the first running application with this bundle identifier.
    [[nodiscard]] virtual std::optional<std::int32_t>
    processIdentifierOf(const QString& bundleIdentifier) const = 0;

    /// How many run with this bundle identifier; this program counts itself.
    [[nodiscard]] virtual int
    runningApplicationsWithBundleIdentifier(const QString& bundleIdentifier) const = 0;

    /// Has the user's own program for such addresses open it. A failure is logged.
    virtual void openURL(const QUrl& url) = 0;
};

} // namespace quorvane
