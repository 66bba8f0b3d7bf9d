#pragma once

#include "platform/Workspace.h"

#include <QMap>

namespace quorvane {

/// The running applications, by bundle identifier.
class SimulatedWorkspace final : public Workspace {
  public:
    [[nodiscard]] std::optional<std::int32_t>
    processIdentifierOf(const QString& bundleIdentifier) const override {
        const auto found = running_.constFind(bundleIdentifier);
        return found == running_.constEnd() ? std::nullopt : std::optional(*found);
    }

    void run(const QString& bundleIdentifier, std::int32_t pid) {
        running_.insert(bundleIdentifier, pid);
    }

  private:
    QMap<QString, std::int32_t> running_;
};

} // namespace quorvane
