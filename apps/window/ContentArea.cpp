#include "apps/window/ContentArea.h"

#include <QLayout>

namespace quorvane {

namespace {

constexpr int leastHeight = 120; // pixels, of two or three lines

} // namespace

ContentArea::ContentArea(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

bool ContentArea::hasHeightForWidth() const {
    return widget() != nullptr && widget()->hasHeightForWidth();
}

int ContentArea::heightForWidth(int width) const {
    return hasHeightForWidth() ? widget()->heightForWidth(width) : -1;
}

QSize ContentArea::sizeHint() const {
    return widget() != nullptr ? widget()->sizeHint() : QScrollArea::sizeHint();
}

QSize ContentArea::minimumSizeHint() const {
    const int width = widget() != nullptr ? widget()->minimumSizeHint().width() : 0;
    return {width, leastHeight};
}

void ContentArea::showEvent(QShowEvent* event) {
    // What lies behind it shows through; a scroll area makes its content opaque.
    viewport()->setAutoFillBackground(false);
    if (widget() != nullptr) {
        widget()->setAutoFillBackground(false);
    }
    QScrollArea::showEvent(event);
}

} // namespace quorvane
