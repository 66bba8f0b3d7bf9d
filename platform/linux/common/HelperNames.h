#pragma once

#include <QLatin1String>

/// What the privileged helper and its client have to agree on.
namespace quorvane::helpernames {

/// Its name on the system bus, its interface, and the name of its executable and of every file and
/// folder that it has on the machine.
inline constexpr QLatin1String label("com.TarnwickStudios.quorvane.helper");
inline constexpr QLatin1String path("/com/TarnwickStudios/quorvane/helper");

inline constexpr QLatin1String loadModuleNamed("LoadModuleNamed");         ///< (s) -> s
inline constexpr QLatin1String unloadModuleNamed("UnloadModuleNamed");     ///< (s) -> s
inline constexpr QLatin1String getTaskPowerMetrics("GetTaskPowerMetrics"); ///< () -> as
inline constexpr QLatin1String getVersion("GetVersion");                   ///< () -> s
inline constexpr QLatin1String enableLowPowerMode("EnableLowPowerMode");   ///< () -> s
inline constexpr QLatin1String disableLowPowerMode("DisableLowPowerMode"); ///< () -> s

/// The helper was about to leave when the call came and has done nothing with it: sent again, it
/// reaches a new one.
inline constexpr QLatin1String leavingError("com.TarnwickStudios.quorvane.helper.Error.Leaving");

/// Where the helper's own folder lies: a distribution's package brings the first, an installation
/// from the bundle the second. The executable in it is named `label`.
inline constexpr QLatin1String packagedFolder("/usr/lib/com.TarnwickStudios.quorvane.helper");
inline constexpr QLatin1String
    installedFolder("/usr/local/lib/com.TarnwickStudios.quorvane.helper");

/// Options of the executable for an administrator; its exit status is 0 on success, else the reason
/// stands on standard error.
inline constexpr QLatin1String installOption("--install");
inline constexpr QLatin1String removeOption("--remove");
inline constexpr QLatin1String replaceOption("--replace"); ///< remove what is there, then install

/// Of extensions that are loaded now, one line each: the kernel's own list of loaded extensions on
/// systems that have such ("    1    0 0  0  0  com.TarnwickStudios.cputune (1.0)"). Readable by
/// all; missing while nothing is loaded.
inline constexpr QLatin1String loadedList("/run/com.TarnwickStudios.quorvane.helper/loaded");

/// One character: "0" turbo off, "1" on. Written by the user's program, applied by CPUTune.
inline constexpr QLatin1String runTimeConfiguration("/tmp/CPUTuneTurboBoostRT.conf");

} // namespace quorvane::helpernames
