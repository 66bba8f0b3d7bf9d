#pragma once

#include "apps/demo/Canvas.h"
#include "apps/demo/Charset.h"

#include <array>

namespace quorvane {

/// The characters that a picture is drawn with.
struct Glyphs {
    char16_t topLeft;
    char16_t topRight;
    char16_t bottomLeft;
    char16_t bottomRight;
    char16_t horizontal;
    char16_t vertical;
    char16_t keyboardLeft;
    char16_t keyboardRight;
    char16_t key;
    char16_t edge; ///< the front edge of the keyboard
    char16_t cord;
    char16_t plug;
    char16_t line; ///< of a text, seen from afar
    char16_t on;
    char16_t off;
    char16_t full;                  ///< part of a bar
    char16_t empty;                 ///< the same
    char16_t mark;                  ///< points up
    char16_t more;                  ///< what was cut off
    std::array<char16_t, 5> shades; ///< dark to bright
};

/// How the light of the screen is shown.
enum class Shading {
    Characters, ///< denser and less dense ones
    Greys,      ///< of which a palette of 256 colors has enough, unlike darker blues
    Colors
};

/// How a picture may be drawn.
struct PictureStyle {
    Charset charset = Charset::Utf8;
    Shading shading = Shading::Colors;

    [[nodiscard]] const Glyphs& glyphs() const;

    /// The text as it may be put into the picture.
    [[nodiscard]] QString shown(const QString& text) const;

    /// The same in at most `width` columns, its end cut off if need be.
    [[nodiscard]] QString shown(const QString& text, int width) const;
};

void drawFrame(Canvas& canvas, const QRect& frame, const Glyphs& glyphs, const Style& style);

} // namespace quorvane
