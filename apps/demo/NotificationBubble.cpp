#include "apps/demo/NotificationBubble.h"

#include "platform/UserNotifications.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr Rgb background{48, 51, 60};
constexpr Rgb border{120, 125, 138};
constexpr Rgb writing{250, 250, 250};
constexpr Rgb pointedBackground{60, 130, 230};
constexpr int widest = 46;

QStringList buttonsOf(const UserNotification& notification) {
    QStringList buttons{notification.actionButtonTitle, notification.otherButtonTitle};
    buttons.removeAll(QString());
    return buttons;
}

// Bright enough to be read on any screen.
double readable(double light) {
    return std::max(light, 0.8);
}

} // namespace

QStringList wrapped(const QString& text, int width) {
    QStringList lines;
    QString rest = text;
    while (rest.size() > width) {
        const qsizetype space = rest.lastIndexOf(u' ', width);
        const qsizetype end = space > 0 ? space : width;
        lines.append(rest.left(end));
        rest = rest.mid(space > 0 ? end + 1 : end);
    }
    lines.append(rest);
    return lines;
}

void NotificationBubble::draw(Canvas& canvas, const UserNotification& notification,
                              const QString& pointed, const QRect& screen, double light) const {
    constexpr int frame = 2;
    const QString title = style_.shown(notification.title);
    const QString text = style_.shown(notification.informativeText);
    const QStringList buttons = buttonsOf(notification);
    const int padding = screen.width() >= widest ? 1 : 0;
    const int longest = static_cast<int>(std::max(title.size(), text.size())) + frame + 2 * padding;
    const int width = std::min({longest, widest, screen.width()});
    const int inside = width - frame - 2 * padding;
    const int buttonRows = buttons.isEmpty() ? 0 : 1;
    const QStringList lines = (wrapped(title, inside) + wrapped(text, inside))
                                  .mid(0, screen.height() - frame - buttonRows);
    const int height = static_cast<int>(lines.size()) + buttonRows + frame;

    const QRect bubble(screen.right() - width + 1 - padding, screen.top(), width, height);
    const Rgb back = dimmed(background, readable(light));
    const Style plain{dimmed(writing, readable(light)), back, false, false};
    Style bold = plain;
    bold.bold = true;
    canvas.fill(bubble, u' ', plain);
    drawFrame(canvas, bubble, style_.glyphs(),
              {dimmed(border, readable(light)), back, false, false});
    const int left = bubble.left() + 1 + padding;
    const qsizetype titleLines = wrapped(title, inside).size();
    for (qsizetype i = 0; i < lines.size(); ++i) {
        canvas.text(left, bubble.top() + 1 + static_cast<int>(i), lines.at(i),
                    i < titleLines ? bold : plain);
    }
    drawButtons(canvas, buttons, pointed, {left, bubble.bottom() - 1, inside, 1}, light);
}

void NotificationBubble::drawButtons(Canvas& canvas, const QStringList& buttons,
                                     const QString& pointed, const QRect& row, double light) const {
    int right = row.right() + 1;
    for (auto button = buttons.crbegin(); button != buttons.crend(); ++button) {
        const QString text = QStringLiteral("[ %1 ]").arg(style_.shown(*button));
        right -= static_cast<int>(text.size());
        const bool isPointed = *button == pointed;
        Style style{dimmed(writing, readable(light)),
                    isPointed ? pointedBackground : dimmed(background, readable(light)), isPointed,
                    false};
        style.inverse = isPointed && style_.shading == Shading::Characters;
        canvas.text(right, row.top(), text, style);
        right -= 1;
    }
}

} // namespace quorvane
