#pragma once

#include "widgets/FeatureGlyph.h"

#include <QPainterPath>

namespace quorvane {

/// The drawings of the glyphs, on a grid of 20 by 20.
struct GlyphPath {
    QPainterPath lines;  ///< to be drawn with a pen of about 1.6
    QPainterPath solids; ///< to be filled

    [[nodiscard]] static GlyphPath of(FeatureGlyph::Glyph glyph);
};

} // namespace quorvane
