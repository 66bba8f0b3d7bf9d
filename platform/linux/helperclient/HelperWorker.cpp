#include "platform/linux/helperclient/HelperWorker.h"

#include "platform/linux/common/HelperNames.h"
#include "platform/linux/helperclient/OneLine.h"

#include <utility>

namespace quorvane {

namespace {

QString errorText(const BusAnswer& answer, const QString& expected) {
    if (!answer.isReply()) {
        return oneLine(answer.errorName() + QStringLiteral(": ") + answer.message().errorMessage());
    }
    return oneLine(QStringLiteral("the reply is of the type \"%1\" in place of \"%2\"")
                       .arg(answer.message().signature(), expected));
}

} // namespace

HelperWorker::HelperWorker(const QDBusConnection& bus, QString service, Listener listener)
    : bus_(bus), calls_(bus, this), service_(std::move(service)), listener_(std::move(listener)) {}

void HelperWorker::watch() {
    watcher_ = std::make_unique<QDBusServiceWatcher>(service_, bus_,
                                                     QDBusServiceWatcher::WatchForOwnerChange);
    connect(watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& oldOwner, const QString& /*newOwner*/) {
                if (!oldOwner.isEmpty()) {
                    helperLeft();
                }
            });
}

void HelperWorker::send(HelperCall call) {
    send(std::move(call), Attempt::First);
}

void HelperWorker::send(HelperCall call, Attempt attempt) {
    const quint64 number = nextNumber_++;
    open_.insert(number);
    const BusCall question = call.question;
    calls_.ask(question, [this, number, attempt, call = std::move(call)](const BusAnswer& answer) {
        open_.erase(number);
        answered(call, attempt, answer);
    });
}

void HelperWorker::answered(const HelperCall& call, Attempt attempt, const BusAnswer& answer) {
    if (answer.errorName() == helpernames::leavingError && attempt == Attempt::First) {
        send(call, Attempt::Second);
        invalidateIfDue();
        return;
    }
    if (answer.isReplyOf(call.replySignature)) {
        call.replied(answer);
    } else {
        call.failed(errorText(answer, call.replySignature));
    }
    if (!answer.isFromService()) {
        helperLeft();
    }
    invalidateIfDue();
    listener_.callEnded();
}

void HelperWorker::fail(const HelperCall& call, const QString& error) {
    call.failed(error);
    listener_.callEnded();
}

// The bus tells of the helper's end before it tells which of its calls get no answer.
void HelperWorker::helperLeft() {
    invalidBefore_ = nextNumber_;
    invalidateIfDue();
}

void HelperWorker::invalidateIfDue() {
    if (invalidBefore_ != 0 && (open_.empty() || *open_.begin() >= invalidBefore_)) {
        invalidBefore_ = 0;
        listener_.invalidated();
    }
}

} // namespace quorvane
