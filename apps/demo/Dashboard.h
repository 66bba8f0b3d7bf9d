#pragma once

#include "apps/demo/Day.h"
#include "apps/demo/PictureStyle.h"

#include <QList>

namespace quorvane {

/// Puts the whole picture together: the laptop, the facts beside it, the battery and the last
/// events below. Fits itself into any size from the smallest one that the terminal's traits allow;
/// below that it only says so.
class Dashboard {
  public:
    explicit Dashboard(const PictureStyle& style) : style_(style) {}

    [[nodiscard]] Canvas draw(const DayState& state, const QList<DemoEvent>& events,
                              QSize size) const;

  private:
    void drawHeader(Canvas& canvas, const DayState& state) const;
    void drawFacts(Canvas& canvas, const DayState& state, const QRect& area) const;
    void drawBattery(Canvas& canvas, const DayState& state, int row) const;
    void drawEvents(Canvas& canvas, const QList<DemoEvent>& events, const QRect& area) const;
    void drawFooter(Canvas& canvas) const;

    PictureStyle style_;
};

} // namespace quorvane
