#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// A text with the look that is wished for all of it. A desktop that draws texts in its own way
/// shows the text alone.
struct AttributedString {
    /// Red, green and blue, each 0..1.
    struct Color {
        double red = 0;
        double green = 0;
        double blue = 0;

        friend bool operator==(const Color&, const Color&) = default;
    };

    QString text;
    std::optional<double> fontSize; ///< points
    std::optional<Color> foreground;
    double baselineOffset = 0; ///< points, upwards

    friend bool operator==(const AttributedString&, const AttributedString&) = default;
};

} // namespace quorvane
