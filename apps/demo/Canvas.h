#pragma once

#include <QChar>
#include <QRect>
#include <QSize>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Rgb&) const = default;
};

/// The color at `share` of its light, 0.0 (black) to 1.0.
[[nodiscard]] Rgb dimmed(Rgb color, double share);

/// The color that lies `share` of the way from one to the other, 0.0 to 1.0.
[[nodiscard]] Rgb between(Rgb from, Rgb to, double share);

/// How a character looks. No color means the terminal's own.
struct Style {
    std::optional<Rgb> foreground;
    std::optional<Rgb> background;
    bool bold = false;
    bool inverse = false;

    bool operator==(const Style&) const = default;
};

struct Cell {
    QChar character = u' ';
    Style style;

    bool operator==(const Cell&) const = default;
};

/// A picture of characters. What is drawn outside of it is cut off. One column a character: wide
/// ones are not catered for.
class Canvas {
  public:
    explicit Canvas(QSize size);

    [[nodiscard]] QSize size() const { return size_; }

    [[nodiscard]] const Cell& at(int column, int row) const;

    void put(int column, int row, QChar character, const Style& style);
    void text(int column, int row, const QString& text, const Style& style = {});
    void fill(const QRect& area, QChar character, const Style& style);

    /// One row as text, without the spaces at its end.
    [[nodiscard]] QString row(int row) const;

  private:
    [[nodiscard]] std::size_t index(int column, int row) const;

    QSize size_;
    std::vector<Cell> cells_;
};

} // namespace quorvane
