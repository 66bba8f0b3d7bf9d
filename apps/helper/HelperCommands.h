#pragma once

#include "apps/helper/Outcome.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace quorvane {

class Extensions;
class Holders;
class PowerSwitch;
class TaskSampler;

/// What the helper does for callers that may. Each reports once. `caller` is the unique name on the
/// bus of whoever asks. Main thread only.
class HelperCommands {
  public:
    using Lines = std::function<void(const QStringList& lines)>;

    /// The references must outlive this.
    HelperCommands(Extensions& extensions, PowerSwitch& lowPower, Holders& holders,
                   TaskSampler& sampler);

    void loadModuleNamed(const QString& path, const QString& caller, const Reported& reported);
    void unloadModuleNamed(const QString& path, const QString& caller, const Reported& reported);
    void getTaskPowerMetrics(const Lines& lines);

    /// A plain decimal number.
    [[nodiscard]] static QString getVersion();

    void enableLowPowerMode(const QString& caller, const Reported& reported);
    void disableLowPowerMode(const QString& caller, const Reported& reported);

    /// The callers that held this have left the bus. Names of other things are ignored.
    void abandon(const QString& thing);

  private:
    Extensions& extensions_;
    PowerSwitch& lowPower_;
    Holders& holders_;
    TaskSampler& sampler_;
};

} // namespace quorvane
