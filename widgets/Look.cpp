#include "widgets/Look.h"

namespace quorvane {

Look::Look(const QPalette& palette)
    : window_(palette.color(QPalette::Window)), isDark_(window_.lightness() < 128) {}

QColor Look::accent() const {
    return isDark_ ? QColor(0x5f, 0xd3, 0x9a) : QColor(0x1b, 0x7f, 0x4b);
}

QColor Look::backdrop() const {
    return isDark_ ? QColor(window_.rgb()) : QColor(Qt::white);
}

} // namespace quorvane
