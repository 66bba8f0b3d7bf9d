#pragma once

#include <QDBusPendingCall>

#include <functional>

class QDBusMessage;
class QObject;

namespace quorvane::Reply {

/// Has the block run on the thread of `owner` with the reply, or with the error that stands for it;
/// never before this returns, and not at all when the owner is gone by then.
void expect(const QDBusPendingCall& call, QObject* owner,
            std::function<void(const QDBusMessage& reply)> block);

} // namespace quorvane::Reply
