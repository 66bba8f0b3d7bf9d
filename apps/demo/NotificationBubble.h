#pragma once

#include "apps/demo/PictureStyle.h"

#include <QStringList>

namespace quorvane {

struct UserNotification;

/// Draws a notification as a desktop would: in the upper right corner of the screen, with its
/// title, its text and its buttons.
class NotificationBubble {
  public:
    explicit NotificationBubble(const PictureStyle& style) : style_(style) {}

    /// `pointed` is the text of the button under the pointer; `light` the screen's, 0.0 to 1.0.
    void draw(Canvas& canvas, const UserNotification& notification, const QString& pointed,
              const QRect& screen, double light) const;

  private:
    void drawButtons(Canvas& canvas, const QStringList& buttons, const QString& pointed,
                     const QRect& row, double light) const;

    PictureStyle style_;
};

/// The text in lines of at most `width` columns, broken at spaces where there are some.
[[nodiscard]] QStringList wrapped(const QString& text, int width);

} // namespace quorvane
