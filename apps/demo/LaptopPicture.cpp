#include "apps/demo/LaptopPicture.h"

#include "apps/demo/NotificationBubble.h"

#include <array>
#include <cmath>

namespace quorvane {

namespace {

struct Wallpaper {
    Rgb top;
    Rgb bottom;
};

constexpr Wallpaper blue{{38, 96, 190}, {112, 204, 214}};
constexpr Wallpaper grey{{108, 108, 108}, {168, 168, 168}};
constexpr Rgb paper{250, 248, 240};
constexpr Rgb ink{120, 124, 134};
constexpr Rgb titleBar{214, 219, 228};
constexpr Rgb casing{150, 154, 162};
constexpr Rgb cordColor{228, 190, 80};

// How long the lines of the document are, in percent of its width.
constexpr std::array lineLengths{46, 0, 92, 86, 95, 61, 0, 89, 94, 72, 0, 90, 83, 40};

// A screen at its darkest is not black, and the eye makes up for part of the rest.
double lightOf(double brightness) {
    constexpr double darkest = 0.12;
    return darkest + (1.0 - darkest) * brightness;
}

} // namespace

void LaptopPicture::draw(Canvas& canvas, const DayState& state, const QRect& area,
                         int socket) const {
    const QRect lid = area.adjusted(1, 0, -1, -keyboardHeight);
    const QRect screen = lid.adjusted(1, 1, -1, -1);
    drawFrame(canvas, lid, style_.glyphs(), {casing, {}, false, false});
    drawScreen(canvas, state.brightness, screen);
    if (state.notification) {
        NotificationBubble(style_).draw(canvas, *state.notification, state.pointedButton, screen,
                                        lightOf(state.brightness));
    }
    drawKeyboard(canvas, {area.left(), lid.bottom() + 1, area.width(), keyboardHeight});
    if (state.pluggedIn) {
        drawCord(canvas, area.right() + 1, socket, lid.bottom() + 1);
    }
}

void LaptopPicture::drawScreen(Canvas& canvas, double brightness, const QRect& screen) const {
    if (style_.shading == Shading::Characters) {
        const auto& shades = style_.glyphs().shades;
        const auto shade = static_cast<std::size_t>(
            std::lround(brightness * static_cast<double>(shades.size() - 1)));
        canvas.fill(screen, shades.at(shade), {});
        return;
    }
    const double light = lightOf(brightness);
    const Wallpaper& wallpaper = style_.shading == Shading::Colors ? blue : grey;
    for (int row = 0; row < screen.height(); ++row) {
        const Rgb color =
            between(wallpaper.top, wallpaper.bottom, static_cast<double>(row) / screen.height());
        canvas.fill({screen.left(), screen.top() + row, screen.width(), 1}, u' ',
                    {{}, dimmed(color, light), false, false});
    }
    drawDocument(canvas, light,
                 {screen.left() + screen.width() / 12, screen.top() + 1, screen.width() / 2,
                  screen.height() - 1});
}

void LaptopPicture::drawDocument(Canvas& canvas, double light, const QRect& page) const {
    canvas.fill(page, u' ', {{}, dimmed(paper, light), false, false});
    canvas.fill({page.left(), page.top(), page.width(), 1}, u' ',
                {{}, dimmed(titleBar, light), false, false});
    const Style writing{dimmed(ink, light), dimmed(paper, light), false, false};
    constexpr int margin = 2;
    for (int row = 1; row < page.height(); ++row) {
        const int share = lineLengths.at(static_cast<std::size_t>(row - 1) % lineLengths.size());
        const int length = (page.width() - 2 * margin) * share / 100;
        canvas.fill({page.left() + margin, page.top() + row, length, 1}, style_.glyphs().line,
                    writing);
    }
}

void LaptopPicture::drawKeyboard(Canvas& canvas, const QRect& keyboard) const {
    const Glyphs& glyphs = style_.glyphs();
    const Style style{casing, {}, false, false};
    canvas.put(keyboard.left(), keyboard.top(), glyphs.keyboardLeft, style);
    canvas.put(keyboard.right(), keyboard.top(), glyphs.keyboardRight, style);
    for (int column = keyboard.left() + 2; column < keyboard.right() - 1; column += 2) {
        canvas.put(column, keyboard.top(), glyphs.key, style);
    }
    canvas.fill({keyboard.left(), keyboard.bottom(), keyboard.width(), 1}, glyphs.edge, style);
}

void LaptopPicture::drawCord(Canvas& canvas, int from, int socket, int row) const {
    const Glyphs& glyphs = style_.glyphs();
    const Style style{cordColor, {}, false, false};
    canvas.fill({from, row, socket - from, 1}, glyphs.cord, style);
    canvas.put(socket, row, glyphs.plug, style);
}

} // namespace quorvane
