#include "widgets/ContentArea.h"

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
    if (widget() == nullptr) {
        return {0, leastHeight};
    }
    return {widget()->minimumSizeHint().width(), qMin(leastHeight, widget()->sizeHint().height())};
}

void ContentArea::resizeEvent(QResizeEvent* event) {
    // Left to itself, a scroll bar that was once needed stays: it makes the content narrower, whose
    // texts then wrap into more lines than there is room for.
    const bool fits = hasHeightForWidth() && heightForWidth(width()) <= height();
    setVerticalScrollBarPolicy(fits ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    setFocusPolicy(fits ? Qt::NoFocus : Qt::StrongFocus); // the keyboard scrolls
    QScrollArea::resizeEvent(event);
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
