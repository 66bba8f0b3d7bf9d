#pragma once

#include <QByteArray>

namespace quorvane {

/// The file name of the program that the Exec line of a desktop entry starts in the end, behind
/// `env`, assignments of variables and `flatpak run --command=`. Empty when the line does not tell:
/// a shell or another interpreter says nothing of what it runs. `line` with the escapes of desktop
/// entries already resolved.
[[nodiscard]] QByteArray programOfLaunchCommand(const QByteArray& line);

/// Whether programs of many kinds run under this one's name.
[[nodiscard]] bool isInterpreter(const QByteArray& program);

/// The last part of a path.
[[nodiscard]] QByteArray fileNameOf(const QByteArray& path);

} // namespace quorvane
