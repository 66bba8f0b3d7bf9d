#include "platform/MainQueue.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>

#include <utility>

namespace quorvane {

void queueOnMain(QObject* context, std::function<void()> block) {
    QMetaObject::invokeMethod(context, std::move(block), Qt::QueuedConnection);
}

void queueOnMain(std::function<void()> block) {
    queueOnMain(QCoreApplication::instance(), std::move(block));
}

bool isMainThread() {
    return QThread::currentThread() == QCoreApplication::instance()->thread();
}

} // namespace quorvane
