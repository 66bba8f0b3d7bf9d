#include "widgets/EffectView.h"

#include "widgets/Look.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

namespace quorvane {

namespace {

constexpr float tint = 0.8F; ///< opacity; with less, dark text is lost over a dark neighbour

} // namespace

EffectView::EffectView(QWidget& parent) : QWidget(&parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(QRect(QPoint(0, 0), parent.size()));
    lower();
    parent.installEventFilter(this);
}

bool EffectView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize && watched == parent()) {
        resize(parentWidget()->size());
    }
    return QWidget::eventFilter(watched, event);
}

void EffectView::paintEvent(QPaintEvent* event) {
    QColor colour = Look(palette()).backdrop();
    colour.setAlphaF(tint);
    QPainter(this).fillRect(event->rect(), colour);
}

} // namespace quorvane
