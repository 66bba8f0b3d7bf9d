#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// Puts the privileged helper on the machine and takes it away. Main thread only; both changes may
/// ask for an administrator's password and block until it is answered.
class HelperInstaller {
  public:
    virtual ~HelperInstaller() = default;

    /// Whether the helper's executable is in its place. Nothing else is checked.
    [[nodiscard]] virtual bool isInstalled(const QString& label) const = 0;

    /// Installs the helper that the running bundle carries. Returns the error, or nothing.
    virtual std::optional<QString> install(const QString& label) = 0;

    /// Removes the helper and waits until it is gone. Returns the error, or nothing.
    virtual std::optional<QString> remove(const QString& label) = 0;
};

} // namespace quorvane
