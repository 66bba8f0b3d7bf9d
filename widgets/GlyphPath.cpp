#include "widgets/GlyphPath.h"

#include <QtMath>

namespace quorvane {

namespace {

constexpr QPointF middle(10, 10);

QRectF around(QPointF centre, qreal radius) {
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

void line(QPainterPath& path, QPointF from, QPointF to) {
    path.moveTo(from);
    path.lineTo(to);
}

void arc(QPainterPath& path, QPointF centre, qreal radius, qreal begin, qreal sweep) {
    path.arcMoveTo(around(centre, radius), begin);
    path.arcTo(around(centre, radius), begin, sweep);
}

QPointF onCircle(qreal radius, qreal degrees) {
    return middle +
           radius * QPointF(qCos(qDegreesToRadians(degrees)), qSin(qDegreesToRadians(degrees)));
}

void sun(GlyphPath& glyph) {
    glyph.lines.addEllipse(middle, 3.2, 3.2);
    for (int angle = 0; angle < 360; angle += 45) {
        line(glyph.lines, onCircle(6, angle), onCircle(7.6, angle));
    }
}

void pauseBars(GlyphPath& glyph) {
    glyph.solids.addRoundedRect(QRectF(5.5, 4, 3, 12), 1, 1);
    glyph.solids.addRoundedRect(QRectF(11.5, 4, 3, 12), 1, 1);
}

void crossedEye(GlyphPath& glyph) {
    glyph.lines.moveTo(2.5, 10);
    glyph.lines.quadTo(QPointF(10, 0.5), QPointF(17.5, 10));
    glyph.lines.quadTo(QPointF(10, 19.5), QPointF(2.5, 10));
    glyph.solids.addEllipse(middle, 2.2, 2.2);
    line(glyph.lines, {4, 16.5}, {16, 3.5});
}

void radioWaves(GlyphPath& glyph) {
    const QPointF foot(10, 15);
    glyph.solids.addEllipse(foot, 1.4, 1.4);
    for (const qreal radius : {4.2, 7.4, 10.6}) {
        arc(glyph.lines, foot, radius, 48, 84);
    }
}

void magnifier(GlyphPath& glyph) {
    glyph.lines.addEllipse(QPointF(8.7, 8.7), 5, 5);
    line(glyph.lines, {12.5, 12.5}, {16.8, 16.8});
}

void bars(GlyphPath& glyph) {
    glyph.solids.addRoundedRect(QRectF(3.5, 10.5, 3, 6), 0.8, 0.8);
    glyph.solids.addRoundedRect(QRectF(8.5, 7, 3, 9.5), 0.8, 0.8);
    glyph.solids.addRoundedRect(QRectF(13.5, 3, 3, 13.5), 0.8, 0.8);
}

void speedometer(GlyphPath& glyph) {
    const QPointF centre(10, 11.5);
    arc(glyph.lines, centre, 7.2, -25, 230);
    line(glyph.lines, centre, {6.8, 7.4});
    glyph.solids.addEllipse(centre, 1.6, 1.6);
}

void arrowBack(GlyphPath& glyph) {
    arc(glyph.lines, {10, 10.5}, 6.2, 150, 300);
    line(glyph.lines, {4.2, 3.6}, {4.2, 7.9});
    line(glyph.lines, {4.2, 7.9}, {8.5, 7.9});
}

void plug(GlyphPath& glyph) {
    line(glyph.lines, {7.5, 2.5}, {7.5, 6.5});
    line(glyph.lines, {12.5, 2.5}, {12.5, 6.5});
    glyph.solids.addRoundedRect(QRectF(5, 6.5, 10, 3), 1, 1);
    arc(glyph.lines, {10, 9.5}, 4, 180, 180);
    line(glyph.lines, {10, 13.5}, {10, 18});
}

void flash(GlyphPath& glyph) {
    glyph.solids.addPolygon(QPolygonF(
        {{11.5, 2}, {4.5, 11.2}, {9, 11.2}, {8.2, 18}, {15.5, 8.4}, {10.8, 8.4}, {11.5, 2}}));
}

void speechBubble(GlyphPath& glyph) {
    QPainterPath bubble;
    bubble.addRoundedRect(QRectF(2.5, 3, 15, 10.5), 3, 3);
    QPainterPath tail;
    tail.addPolygon(QPolygonF({{6, 12}, {6, 17}, {11, 12}, {6, 12}}));
    glyph.lines = bubble.united(tail);
    for (const qreal x : {6.4, 10.0, 13.6}) {
        glyph.solids.addEllipse(QPointF(x, 8.2), 1.1, 1.1);
    }
}

void handSwitch(GlyphPath& glyph) {
    glyph.lines.addRoundedRect(QRectF(2, 5.5, 16, 9), 4.5, 4.5);
    glyph.solids.addEllipse(QPointF(13.4, 10), 2.7, 2.7);
}

} // namespace

GlyphPath GlyphPath::of(FeatureGlyph::Glyph glyph) {
    using Draw = void (*)(GlyphPath&);
    // In the order of the glyphs.
    constexpr Draw drawings[] = {sun,       pauseBars, crossedEye,   radioWaves,
                                 magnifier, bars,      speedometer,  arrowBack,
                                 plug,      flash,     speechBubble, handSwitch};
    GlyphPath path;
    path.solids.setFillRule(Qt::WindingFill);
    drawings[glyph](path);
    return path;
}

} // namespace quorvane
