#include "apps/demo/Canvas.h"

#include <algorithm>
#include <cmath>

namespace quorvane {

namespace {

std::uint8_t mixed(std::uint8_t from, std::uint8_t to, double share) {
    return static_cast<std::uint8_t>(std::lround(from + (to - from) * share));
}

} // namespace

Rgb dimmed(Rgb color, double share) {
    return between({0, 0, 0}, color, share);
}

Rgb between(Rgb from, Rgb to, double share) {
    const double part = std::clamp(share, 0.0, 1.0);
    return {mixed(from.red, to.red, part), mixed(from.green, to.green, part),
            mixed(from.blue, to.blue, part)};
}

Canvas::Canvas(QSize size)
    : size_(size.expandedTo({0, 0})),
      cells_(static_cast<std::size_t>(size_.width()) * static_cast<std::size_t>(size_.height())) {}

const Cell& Canvas::at(int column, int row) const {
    return cells_.at(index(column, row));
}

void Canvas::put(int column, int row, QChar character, const Style& style) {
    if (QRect({0, 0}, size_).contains(column, row)) {
        cells_[index(column, row)] = {character, style};
    }
}

void Canvas::text(int column, int row, const QString& text, const Style& style) {
    for (const QChar character : text) {
        put(column++, row, character, style);
    }
}

void Canvas::fill(const QRect& area, QChar character, const Style& style) {
    for (int row = area.top(); row <= area.bottom(); ++row) {
        for (int column = area.left(); column <= area.right(); ++column) {
            put(column, row, character, style);
        }
    }
}

QString Canvas::row(int row) const {
    QString text;
    for (int column = 0; column < size_.width(); ++column) {
        text += at(column, row).character;
    }
    while (text.endsWith(u' ')) {
        text.chop(1);
    }
    return text;
}

std::size_t Canvas::index(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(size_.width()) +
           static_cast<std::size_t>(column);
}

} // namespace quorvane
