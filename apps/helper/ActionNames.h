#pragma once

#include <QLatin1String>
#include <QString>

/// The actions that polkit knows the helper's commands by; packaging/helper/*.policy tells who may.
namespace quorvane::actionnames {

/// Turbo off, and the machine's low power mode on: slower, cooler, and as easily undone.
inline constexpr QLatin1String slowDown("com.tarnwickstudios.quorvane.slow-down");

/// Giving up what oneself holds. Also for a session that is not in front: whoever has slowed the
/// machine may always end that.
inline constexpr QLatin1String putBack("com.tarnwickstudios.quorvane.put-back");

/// Which version of the helper runs.
inline constexpr QLatin1String getVersion("com.tarnwickstudios.quorvane.get-version");

/// The report of tasks has a right with a name that is older than polkit:
/// `polkitAction("com.TarnwickStudios.quorvane..startWebService")`.
inline constexpr QLatin1String taskPowerMetrics("com.tarnwickstudios.quorvane.startwebservice");

/// The action for a right of any name. polkit takes small letters, digits, dots and hyphens only,
/// so: capital letters become small ones, a row of dots becomes one dot, and any other character a
/// hyphen.
[[nodiscard]] QString polkitAction(const QString& right);

} // namespace quorvane::actionnames
