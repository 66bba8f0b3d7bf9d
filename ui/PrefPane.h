#pragma once

namespace quorvane {

/// The user's way to the settings. Main thread only.
class PrefPane {
  public:
    /// Shows where the settings are. This version's bundle carries no settings window.
    void openPrefPane() const;
};

} // namespace quorvane
