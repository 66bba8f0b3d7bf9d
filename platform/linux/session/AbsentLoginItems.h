#pragma once

#include "platform/LoginItems.h"

namespace quorvane {

/// Where nothing is known of what the desktop starts at login: the program never is among it, and
/// cannot be put there.
class AbsentLoginItems final : public LoginItems {
  public:
    [[nodiscard]] bool launchOnLogin() const override { return false; }

    void setLaunchOnLogin(bool /*launches*/) override {}
};

} // namespace quorvane
