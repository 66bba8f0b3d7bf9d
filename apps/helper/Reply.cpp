#include "apps/helper/Reply.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace quorvane {

void Reply::expect(const QDBusPendingCall& call, QObject* owner,
                   std::function<void(const QDBusMessage& reply)> block) {
    auto* const watcher = new QDBusPendingCallWatcher(call, owner);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, owner,
                     [watcher, block = std::move(block)] {
                         watcher->deleteLater();
                         block(watcher->reply());
                     });
}

} // namespace quorvane
