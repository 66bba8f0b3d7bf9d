#pragma once

#include <QString>

namespace quorvane {

/// The copies of Quorvane in the user's session. Main thread only.
class ProgramCopies {
  public:
    virtual ~ProgramCopies() = default;

    /// How many copies of the edition with this bundle identifier run; this program counts itself.
    [[nodiscard]] virtual int running(const QString& bundleIdentifier) const = 0;
};

} // namespace quorvane
