#include "platform/linux/common/BusCalls.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace quorvane {

namespace {

/// A watcher hears nothing of a call that could not even be sent, but of the same as an answer.
QDBusPendingCall audible(const QDBusPendingCall& call) {
    return call.isFinished() ? QDBusPendingCall::fromCompletedCall(call.reply()) : call;
}

} // namespace

BusCalls::BusCalls(const QDBusConnection& bus, QObject* parent) : QObject(parent), bus_(bus) {}

BusCalls::~BusCalls() = default;

void BusCalls::ask(const BusCall& call, Answered answered) {
    const QDBusPendingCall pending = audible(bus_.asyncCall(call.message(), call.timeout()));
    auto* const watcher = new QDBusPendingCallWatcher(pending, this);
    open_.append(watcher);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, answered = std::move(answered)] {
                open_.removeOne(watcher);
                watcher->deleteLater();
                const BusAnswer answer(watcher->reply());
                answered(answer); // may destroy this
            });
}

void BusCalls::deliverAnswers() {
    const QList<QPointer<QDBusPendingCallWatcher>> calls = open_; // answering may open further ones
    for (const QPointer<QDBusPendingCallWatcher>& watcher : calls) {
        if (watcher && watcher->isFinished()) {
            watcher->waitForFinished();
        }
    }
}

void BusCalls::waitForAnswers() {
    const QPointer<BusCalls> self(this);
    while (self && !open_.isEmpty()) {
        open_.first()->waitForFinished();
    }
}

void BusCalls::forget() {
    for (const QPointer<QDBusPendingCallWatcher>& watcher : std::exchange(open_, {})) {
        delete watcher;
    }
}

BusAnswer BusCalls::askAndWait(const QDBusConnection& bus, const BusCall& call) {
    return BusAnswer(bus.call(call.message(), QDBus::Block, call.timeout()));
}

} // namespace quorvane
