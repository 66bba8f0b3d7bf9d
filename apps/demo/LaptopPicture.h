#pragma once

#include "apps/demo/Day.h"
#include "apps/demo/PictureStyle.h"

namespace quorvane {

/// Draws the laptop: its screen, as bright as the display is set, with the newest notification on
/// it, the keyboard, and the cord when it is plugged in.
class LaptopPicture {
  public:
    explicit LaptopPicture(const PictureStyle& style) : style_(style) {}

    /// Rows that the keyboard takes of the area's height.
    static constexpr int keyboardHeight = 2;

    /// `area` takes all of the laptop; the cord goes on to its right, up to the column `socket`.
    void draw(Canvas& canvas, const DayState& state, const QRect& area, int socket) const;

  private:
    void drawScreen(Canvas& canvas, double brightness, const QRect& screen) const;
    void drawDocument(Canvas& canvas, double light, const QRect& page) const;
    void drawKeyboard(Canvas& canvas, const QRect& keyboard) const;
    void drawCord(Canvas& canvas, int from, int socket, int row) const;

    PictureStyle style_;
};

} // namespace quorvane
