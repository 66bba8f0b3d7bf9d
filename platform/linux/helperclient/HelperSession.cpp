#include "platform/linux/helperclient/HelperSession.h"

#include "platform/linux/helperclient/CallsUnderWay.h"

#include <utility>

namespace quorvane {

HelperSession::HelperSession(const QDBusConnection& bus, QString service,
                             std::shared_ptr<CallsUnderWay> calls)
    : bus_(bus), service_(std::move(service)), calls_(std::move(calls)) {
    thread_.setObjectName(QStringLiteral("helper"));
}

HelperSession::~HelperSession() {
    end();
}

void HelperSession::setInvalidationHandler(std::function<void()> handler) {
    const std::lock_guard lock(mutex_);
    handler_ = std::move(handler);
}

void HelperSession::run(std::function<void(HelperWorker& worker)> block) {
    if (hasEnded_) {
        return;
    }
    if (!worker_) {
        const auto callEnded = [this] {
            --open_;
            calls_->ended();
        };
        worker_ = std::make_unique<HelperWorker>(
            bus_, service_, HelperWorker::Listener{callEnded, [this] { invalidated(); }});
        worker_->moveToThread(&thread_);
        thread_.start();
        QMetaObject::invokeMethod(
            worker_.get(), [worker = worker_.get()] { worker->watch(); }, Qt::QueuedConnection);
    }
    QMetaObject::invokeMethod(
        worker_.get(), [worker = worker_.get(), block = std::move(block)] { block(*worker); },
        Qt::QueuedConnection);
}

void HelperSession::send(HelperCall call) {
    if (hasEnded_) {
        return;
    }
    ++open_;
    calls_->began();
    run([call = std::move(call)](HelperWorker& worker) { worker.send(call); });
}

void HelperSession::fail(HelperCall call, const QString& error) {
    if (hasEnded_) {
        return;
    }
    ++open_;
    calls_->began();
    run([call = std::move(call), error](HelperWorker& worker) { worker.fail(call, error); });
}

void HelperSession::invalidate() {
    isInvalid_ = true;
    run([](HelperWorker& worker) { worker.invalidate(); });
}

void HelperSession::invalidated() {
    isInvalid_ = true;
    const std::lock_guard lock(mutex_);
    if (const auto handler = std::exchange(handler_, {})) {
        handler();
    }
}

void HelperSession::end() {
    if (std::exchange(hasEnded_, true)) {
        return;
    }
    thread_.quit();
    thread_.wait();
    worker_.reset();
    if (const int dropped = open_.exchange(0); dropped > 0) {
        calls_->ended(dropped);
    }
}

} // namespace quorvane
