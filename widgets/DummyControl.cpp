#include "widgets/DummyControl.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPointer>

namespace quorvane {

void DummyControl::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    // Accepted here, or Qt would bring the parent the same press once more.
    event->accept();
    const QPointer<DummyControl> self(this);
    if (parentWidget() != nullptr) {
        QMouseEvent press(event->type(), mapToParent(event->position()), event->scenePosition(),
                          event->globalPosition(), event->button(), event->buttons(),
                          event->modifiers(), event->pointingDevice());
        QCoreApplication::sendEvent(parentWidget(), &press);
    }
    // The view may have ended this control.
    if (self) {
        Q_EMIT triggered();
    }
}

} // namespace quorvane
