#pragma once

#include "platform/Workspace.h"
#include "platform/linux/applications/ApplicationIdentity.h"

#include <QStringList>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace quorvane {

/// The applications that the user's service manager runs in units of their own. It is looked when
/// somebody asks; nothing tells of changes, and so nothing wakes. One thread at a time.
class UnitApplications {
  public:
    using Identify = std::function<std::optional<ApplicationIdentity::Found>(std::int32_t pid)>;

    /// `folder` is the control group that holds the units, on disk.
    explicit UnitApplications(QString folder);

    /// `app.slice` of the user's service manager; empty where there is none.
    [[nodiscard]] static QString folderOfTheSession();

    /// Those in whose units none of `known` runs, as accessory ones. Their process is one that none
    /// of the unit's other processes has started. A unit with a process that one of `known`, or of
    /// another unit, has started is part of that one: it has moved on and left some behind.
    [[nodiscard]] std::vector<RunningApplication>
    without(const std::vector<RunningApplication>& known, const Identify& identify);

  private:
    [[nodiscard]] const RunningApplication& identified(const QString& unit, std::int32_t pid,
                                                       const Identify& identify);
    using Processes = std::vector<std::int32_t>;

    [[nodiscard]] QStringList units() const;
    [[nodiscard]] Processes processesOf(const QString& unit) const;

    const QString folder_;
    std::map<QString, RunningApplication> identified_; ///< before, by unit
};

} // namespace quorvane
