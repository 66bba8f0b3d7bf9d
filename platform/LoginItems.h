#pragma once

namespace quorvane {

/// What the desktop starts when the user logs in. Main thread only.
class LoginItems {
  public:
    virtual ~LoginItems() = default;

    /// Whether this copy of the program is among them.
    [[nodiscard]] virtual bool launchOnLogin() const = 0;

    virtual void setLaunchOnLogin(bool launches) = 0;
};

} // namespace quorvane
