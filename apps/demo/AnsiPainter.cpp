#include "apps/demo/AnsiPainter.h"

#include <array>
#include <limits>

namespace quorvane {

namespace {

const QByteArray introducer = QByteArrayLiteral("\x1b[");

int distance(Rgb one, Rgb other) {
    const int red = one.red - other.red;
    const int green = one.green - other.green;
    const int blue = one.blue - other.blue;
    return red * red + green * green + blue * blue;
}

// The eight colors that every color terminal has and their bright relatives, as xterm shows them.
constexpr std::array<Rgb, 16> basicColors{
    Rgb{0, 0, 0},       Rgb{205, 0, 0},   Rgb{0, 205, 0},   Rgb{205, 205, 0},
    Rgb{0, 0, 238},     Rgb{205, 0, 205}, Rgb{0, 205, 205}, Rgb{229, 229, 229},
    Rgb{127, 127, 127}, Rgb{255, 0, 0},   Rgb{0, 255, 0},   Rgb{255, 255, 0},
    Rgb{92, 92, 255},   Rgb{255, 0, 255}, Rgb{0, 255, 255}, Rgb{255, 255, 255}};

int nearestBasic(Rgb color) {
    int best = 0;
    int least = std::numeric_limits<int>::max();
    for (int i = 0; i < static_cast<int>(basicColors.size()); ++i) {
        const int current = distance(color, basicColors.at(static_cast<std::size_t>(i)));
        if (current < least) {
            least = current;
            best = i;
        }
    }
    return best;
}

// Of the palette of 256: the cube of 6 by 6 by 6 colors from 16 on, the greys from 232 on.
int nearestOfPalette(Rgb color) {
    constexpr std::array<int, 6> steps{0, 95, 135, 175, 215, 255};
    const auto nearestStep = [&steps](int value) {
        int best = 0;
        for (int i = 1; i < 6; ++i) {
            const int here = steps.at(static_cast<std::size_t>(i)) - value;
            const int there = steps.at(static_cast<std::size_t>(best)) - value;
            best = here * here < there * there ? i : best;
        }
        return best;
    };
    const auto component = [&steps](int step) {
        return static_cast<std::uint8_t>(steps.at(static_cast<std::size_t>(step)));
    };
    const int red = nearestStep(color.red);
    const int green = nearestStep(color.green);
    const int blue = nearestStep(color.blue);
    const Rgb ofCube{component(red), component(green), component(blue)};

    const int mean = (color.red + color.green + color.blue) / 3;
    const int greyStep = std::clamp((mean - 3) / 10, 0, 23);
    const auto greyValue = static_cast<std::uint8_t>(8 + 10 * greyStep);
    const Rgb grey{greyValue, greyValue, greyValue};
    return distance(color, grey) < distance(color, ofCube) ? 232 + greyStep
                                                           : 16 + 36 * red + 6 * green + blue;
}

QByteArray moveTo(int column, int row) {
    return introducer + QByteArray::number(row + 1) + ';' + QByteArray::number(column + 1) + 'H';
}

} // namespace

AnsiPainter::AnsiPainter(Charset charset, ColorDepth depth) : charset_(charset), depth_(depth) {}

QByteArray AnsiPainter::paint(const Canvas& canvas) {
    QByteArray bytes;
    if (!last_ || last_->size() != canvas.size()) {
        bytes += introducer + "0m" + introducer + "2J";
        last_.emplace(canvas.size());
    }
    for (int row = 0; row < canvas.size().height(); ++row) {
        paintRow(bytes, canvas, row);
    }
    if (!bytes.isEmpty()) {
        bytes += introducer + "0m";
    }
    last_ = canvas;
    return bytes;
}

void AnsiPainter::paintRow(QByteArray& bytes, const Canvas& canvas, int row) const {
    constexpr int bridged = 4; // cells that are sooner written again than jumped over
    std::optional<int> pen;    // the column that the terminal writes to next
    std::optional<Style> style;
    const auto write = [&](const Cell& cell) {
        if (style != cell.style) {
            bytes += sequence(cell.style);
            style = cell.style;
        }
        bytes += charset_ == Charset::Utf8 ? QString(cell.character).toUtf8()
                                           : asciiOnly(cell.character).left(1).toLatin1();
    };
    for (int column = 0; column < canvas.size().width(); ++column) {
        const Cell& cell = canvas.at(column, row);
        if (cell == last_->at(column, row)) {
            continue;
        }
        if (!pen || column - *pen > bridged) {
            bytes += moveTo(column, row);
            pen = column;
        }
        for (; *pen <= column; ++*pen) {
            write(canvas.at(*pen, row));
        }
    }
}

QByteArray AnsiPainter::sequence(const Style& style) const {
    QByteArray codes = "0";
    codes += style.bold ? ";1" : "";
    codes += style.inverse ? ";7" : "";
    if (style.foreground) {
        codes += colorCode(*style.foreground, false);
    }
    if (style.background) {
        codes += colorCode(*style.background, true);
    }
    return introducer + codes + 'm';
}

QByteArray AnsiPainter::colorCode(Rgb color, bool background) const {
    switch (depth_) {
    case ColorDepth::None:
        break;
    case ColorDepth::Basic: {
        const int index = nearestBasic(color);
        const int base = (index < 8 ? 30 : 90) + (background ? 10 : 0);
        return ';' + QByteArray::number(base + index % 8);
    }
    case ColorDepth::Palette:
        return (background ? ";48;5;" : ";38;5;") + QByteArray::number(nearestOfPalette(color));
    case ColorDepth::Full:
        return (background ? ";48;2;" : ";38;2;") + QByteArray::number(color.red) + ';' +
               QByteArray::number(color.green) + ';' + QByteArray::number(color.blue);
    }
    return {};
}

} // namespace quorvane
