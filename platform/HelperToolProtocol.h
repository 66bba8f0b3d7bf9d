#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quorvane {

/// The commands of the privileged helper. Each calls its reply exactly once, on the connection's
/// own thread, or never when the command could not be delivered.
class HelperToolProtocol {
  public:
    using StatusReply = std::function<void(const QString& status)>;
    using LinesReply = std::function<void(const QStringList& lines)>;

    virtual ~HelperToolProtocol() = default;

    /// Loads the kernel-extension bundle at this full path. Replies with a human-readable result.
    virtual void loadModuleNamed(const QString& path, StatusReply reply) = 0;

    /// Unloads that kernel extension. Replies with a human-readable result.
    virtual void unloadModuleNamed(const QString& path, StatusReply reply) = 0;

    /// Samples the energy use of every task. Replies with the report's lines.
    virtual void getTaskPowerMetrics(LinesReply reply) = 0;

    /// Replies with the helper's version, a plain decimal number such as 12 or 1.5.
    virtual void getVersion(StatusReply reply) = 0;

    /// Switches the operating system's own low power mode on.
    virtual void enableLowPowerMode(StatusReply reply) = 0;

    /// Switches the operating system's own low power mode off.
    virtual void disableLowPowerMode(StatusReply reply) = 0;
};

} // namespace quorvane
