#include "widgets/ProductIcon.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <cmath>

namespace quorvane {

namespace {

constexpr qreal iconGrid = 64.0;

/// The sign, as the status images have it: two circles and the lines that cross between them.
QPainterPath sign(QPointF centre, qreal distance, qreal radius) {
    const qreal sine = radius / distance;
    const qreal cosine = std::sqrt(1 - sine * sine);
    const qreal turn = 90 + qRadiansToDegrees(std::asin(sine)); // degrees from the outermost point
    const QRectF circle(-radius, -radius, 2 * radius, 2 * radius);
    QPainterPath path;
    path.moveTo(centre + QPointF(distance - radius * sine, -radius * cosine));
    path.arcTo(circle.translated(centre + QPointF(distance, 0)), turn, -2 * turn);
    path.arcTo(circle.translated(centre - QPointF(distance, 0)), 180 - turn, 2 * turn);
    path.closeSubpath();
    return path;
}

QPainterPath leaf() {
    QPainterPath blade;
    blade.moveTo(55, 37);
    blade.cubicTo(44, 36.5, 36.5, 41, 37, 49);
    blade.cubicTo(37.2, 52.5, 39.5, 54.8, 43, 55);
    blade.cubicTo(51, 55.5, 55.5, 48, 55, 37);
    return blade;
}

void paintTile(QPainter& painter) {
    QLinearGradient gradient(0, 0, iconGrid, iconGrid);
    gradient.setColorAt(0, QColor(0x35, 0xb8, 0x7a));
    gradient.setColorAt(1, QColor(0x0f, 0x62, 0x5c));
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(QRectF(2, 2, iconGrid - 4, iconGrid - 4), 15, 15);
    painter.setPen(QPen(QColor(255, 255, 255, 60), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(2.5, 2.5, iconGrid - 5, iconGrid - 5), 14.5, 14.5);
}

void paintSign(QPainter& painter) {
    painter.setPen(QPen(Qt::white, 5.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(sign({iconGrid / 2, 30}, 11.5, 8.6));
}

void paintLeaf(QPainter& painter) {
    const QColor dark(0x14, 0x6c, 0x5e);
    painter.setPen(QPen(dark, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(QColor(0xd8, 0xf5, 0xb4));
    painter.drawPath(leaf());
    painter.setPen(Qt::NoPen);
    painter.drawPath(leaf());
    painter.setPen(QPen(dark, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(36.5, 55.5), QPointF(48.5, 43.5));
}

void paintIcon(QPainter& painter, qreal side) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / iconGrid, side / iconGrid);
    paintTile(painter);
    paintSign(painter);
    paintLeaf(painter);
}

} // namespace

ProductIcon::ProductIcon(QWidget* parent) : QWidget(parent) {}

QPixmap ProductIcon::pixmap(int size) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paintIcon(painter, size);
    return picture;
}

void ProductIcon::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const int side = qMin(width(), height());
    painter.translate((width() - side) / 2.0, (height() - side) / 2.0);
    paintIcon(painter, side);
    QWidget::paintEvent(event);
}

} // namespace quorvane
