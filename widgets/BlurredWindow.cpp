#include "widgets/BlurredWindow.h"

#include "widgets/EffectView.h"
#include "widgets/Look.h"
#include "widgets/X11Window.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QWindow>

namespace quorvane {

namespace {

constexpr float opacity = 0.95F;
constexpr int radius = 20; // pixels

} // namespace

BlurredWindow::BlurredWindow(QWidget* parent, Background background)
    : QWidget(parent, Qt::Window), background_(background) {}

void BlurredWindow::awakeFromLayout() {
    if (background_ == Background::chosenByWindowManager) {
        background_ = X11Window::offersBlur() ? Background::effect : Background::translucent;
    }
    setAttribute(Qt::WA_TranslucentBackground);
    if (hasEffect()) {
        insertEffectView();
    } else {
        becomeTranslucent();
    }
}

void BlurredWindow::insertEffectView() {
    setWindowFlag(Qt::FramelessWindowHint);
    new EffectView(*this);
}

void BlurredWindow::becomeTranslucent() {
    blurRadius_ = radius;
}

bool BlurredWindow::hasEffect() const {
    return background_ == Background::effect;
}

QColor BlurredWindow::backgroundColor() const {
    if (hasEffect()) {
        return {};
    }
    QColor colour = Look(palette()).backdrop();
    colour.setAlphaF(opacity);
    return colour;
}

void BlurredWindow::showEvent(QShowEvent* event) {
    X11Window(*this).setBlurBehind();
    QWidget::showEvent(event);
}

void BlurredWindow::paintEvent(QPaintEvent* event) {
    if (!hasEffect()) {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(event->rect(), backgroundColor());
    }
    QWidget::paintEvent(event);
}

void BlurredWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) {
        close();
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        for (auto* button : findChildren<QPushButton*>()) {
            if (button->isDefault()) {
                button->click();
                return;
            }
        }
    }
    QWidget::keyPressEvent(event);
}

void BlurredWindow::mousePressEvent(QMouseEvent* event) {
    // Without a title bar there is nothing else to move it by.
    if (hasEffect() && event->button() == Qt::LeftButton && windowHandle() != nullptr) {
        windowHandle()->startSystemMove();
        return;
    }
    QWidget::mousePressEvent(event);
}

} // namespace quorvane
