#include "widgets/WhiteView.h"

#include <QPaintEvent>
#include <QPainter>

namespace quorvane {

void WhiteView::paintEvent(QPaintEvent* event) {
    QPainter(this).fillRect(event->rect(), Qt::white);
    QFrame::paintEvent(event);
}

} // namespace quorvane
