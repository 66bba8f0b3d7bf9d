#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// What kind of operating system this is, as far as it decides how the processor is slowed down.
/// Main thread only.
class OperatingSystem {
  public:
    virtual ~OperatingSystem() = default;

    /// Whether the system offers a switch of its own for the processor's turbo or for its whole
    /// power consumption. Where it does not, an own extension has to do it all. Asked once at the
    /// start; may take a moment, which is bounded.
    [[nodiscard]] virtual bool isVersion13OrLater() const = 0;

    /// The kind of processor in the kernel's words, for example "x86_64"; nothing when the kernel
    /// does not tell.
    [[nodiscard]] virtual std::optional<QString> machine() const = 0;
};

} // namespace quorvane
