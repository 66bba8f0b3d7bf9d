#pragma once

#include <string>
#include <string_view>

namespace quorvane {

/// Where the privileged helper lists the extensions that are loaded. Missing while there is none.
inline constexpr const char* loadedExtensionsFile =
    "/run/com.TarnwickStudios.quorvane.helper/loaded";

/// Above the lines, as listers of loaded extensions have it.
inline constexpr std::string_view loadedExtensionsHeader =
    "Index Refs Address            Size       Wired      Name (Version)\n";

/// The lines of the file that tell of an extension whose name is exactly `identifier`, or of any
/// when that is empty; each with its line end, as it stands in the file. A line is
///     index references address size wired name (version)
/// Anything else is left out, and so is what comes after the first 64 KiB. A file that is missing,
/// cannot be read or is no regular file has no lines.
[[nodiscard]] std::string loadedExtensions(const char* file, std::string_view identifier);

} // namespace quorvane
