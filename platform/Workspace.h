#pragma once

#include <QString>

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
};

} // namespace quorvane
