#pragma once

#include "platform/ProgramCopies.h"

#include <QString>

namespace quorvane {

class RunningCopies;

/// The copies that have a name on the session bus.
class LinuxProgramCopies final : public ProgramCopies {
  public:
    /// `ownIdentifier` is this program's edition. Without `copies`, which else must outlive this,
    /// no copy is seen.
    LinuxProgramCopies(const RunningCopies* copies, QString ownIdentifier);

    [[nodiscard]] int running(const QString& bundleIdentifier) const override;

  private:
    const RunningCopies* copies_;
    QString ownIdentifier_;
};

} // namespace quorvane
