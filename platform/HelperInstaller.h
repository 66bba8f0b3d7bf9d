#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace quorvane {

/// Puts the privileged helper on the machine and takes it away. Main thread only. Both changes may
/// ask for an administrator's password; nothing waits for the answer.
class HelperInstaller {
  public:
    /// Called once, on the main thread, when the change is done or has failed, possibly before the
    /// call that asked for it returns: with the error, or with nothing. Not called any more once
    /// the installer is gone.
    using Done = std::function<void(const std::optional<QString>& error)>;

    virtual ~HelperInstaller() = default;

    /// Whether the helper's executable is in its place. Nothing else is checked.
    [[nodiscard]] virtual bool isInstalled(const QString& label) const = 0;

    /// Installs the helper that the running bundle carries.
    virtual void install(const QString& label, Done done) = 0;

    /// Removes the helper; done when it is gone. Directly followed by `install` this is one change
    /// and asks for one password; both are told of its end, in this order.
    virtual void remove(const QString& label, Done done) = 0;
};

} // namespace quorvane
