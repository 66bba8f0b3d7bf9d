#pragma once

#include <QLatin1String>

/// Where the kernel has its switches for the processor's turbo, beneath /sys. A machine has at most
/// one kind of them.
namespace quorvane::turboswitch {

/// "1": no turbo.
inline constexpr QLatin1String intelNoTurbo("devices/system/cpu/intel_pstate/no_turbo");

/// "0": no turbo, for all processors at once.
inline constexpr QLatin1String globalBoost("devices/system/cpu/cpufreq/boost");

/// One folder for each group of processors that change their clock together; its name begins with
/// `policyPrefix`, and `policyBoost` in it is its switch ("0": no turbo).
inline constexpr QLatin1String policyFolder("devices/system/cpu/cpufreq");
inline constexpr QLatin1String policyPrefix("policy");
inline constexpr QLatin1String policyBoost("boost");

} // namespace quorvane::turboswitch
