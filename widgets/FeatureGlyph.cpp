#include "widgets/FeatureGlyph.h"

#include "widgets/GlyphPath.h"
#include "widgets/Look.h"

#include <QPaintEvent>
#include <QPainter>

namespace quorvane {

namespace {

constexpr qreal glyphGrid = 20.0;
constexpr qreal share = 0.6; ///< of the tile's side that the drawing takes

} // namespace

FeatureGlyph::FeatureGlyph(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void FeatureGlyph::setGlyph(Glyph glyph) {
    // A layout file may hold any number.
    glyph_ = glyph >= Dim && glyph <= Manual ? glyph : Dim;
    update();
}

void FeatureGlyph::paintEvent(QPaintEvent* event) {
    const qreal side = qMin(width(), height());
    const QColor colour = Look(palette()).accent();
    QColor tile = colour;
    tile.setAlphaF(0.14F);

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(tile);
    painter.drawRoundedRect(QRectF(0, 0, side, side), side / 4, side / 4);

    const GlyphPath path = GlyphPath::of(glyph_);
    painter.translate(side * (1 - share) / 2, side * (1 - share) / 2);
    painter.scale(side * share / glyphGrid, side * share / glyphGrid);
    painter.fillPath(path.solids, colour);
    painter.strokePath(path.lines, QPen(colour, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QWidget::paintEvent(event);
}

} // namespace quorvane
