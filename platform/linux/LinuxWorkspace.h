#pragma once

#include "platform/Workspace.h"

namespace quorvane {

/// Sees no applications so far, and so none is ever paused.
class LinuxWorkspace final : public Workspace {
  public:
    [[nodiscard]] std::optional<std::int32_t>
    processIdentifierOf(const QString& /*bundleIdentifier*/) const override {
        return std::nullopt;
    }
};

} // namespace quorvane
