#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

/// What the terminal can show.
enum class Charset { Ascii, Utf8 };

/// The text without anything but ASCII: dashes, arrows and quotation marks become their nearest
/// relatives, other characters question marks.
[[nodiscard]] QString asciiOnly(const QString& text);

[[nodiscard]] QByteArray encoded(const QString& text, Charset charset);

} // namespace quorvane
