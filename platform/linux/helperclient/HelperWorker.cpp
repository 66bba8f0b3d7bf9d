#include "platform/linux/HelperWorker.h"

#include "platform/linux/HelperNames.h"
#include "platform/linux/OneLine.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <limits>
#include <utility>

namespace quorvane {

namespace {

// D-Bus knows this number as "no time limit": a sample of the machine's power takes long, and when
// the helper leaves, the bus itself answers.
constexpr int untilAnswered = std::numeric_limits<int>::max();

/// Whether the answer comes from the bus, because there is no helper any more that could give one.
bool isUndelivered(const QDBusMessage& error) {
    switch (QDBusError(error).type()) {
    case QDBusError::ServiceUnknown:
    case QDBusError::NoReply:
    case QDBusError::NoServer:
    case QDBusError::Disconnected:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return true;
    default:
        return error.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
               error.errorName().startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn."));
    }
}

QString errorText(const QDBusMessage& answer, const QString& expected) {
    if (answer.type() == QDBusMessage::ErrorMessage) {
        return oneLine(answer.errorName() + QStringLiteral(": ") + answer.errorMessage());
    }
    return oneLine(QStringLiteral("the reply is of the type \"%1\" in place of \"%2\"")
                       .arg(answer.signature(), expected));
}

} // namespace

HelperWorker::HelperWorker(const QDBusConnection& bus, QString service, Listener listener)
    : bus_(bus), service_(std::move(service)), listener_(std::move(listener)) {}

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
    const QDBusPendingCall pending = bus_.asyncCall(call.message, untilAnswered);
    if (pending.isError()) { // of a bus that is not there nothing would ever be heard
        open_.erase(number);
        answered(call, attempt, pending.reply());
        return;
    }
    auto* const watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, watcher, number, attempt, call = std::move(call)] {
                watcher->deleteLater();
                open_.erase(number);
                answered(call, attempt, watcher->reply());
            });
}

void HelperWorker::answered(const HelperCall& call, Attempt attempt, const QDBusMessage& answer) {
    const bool isError = answer.type() == QDBusMessage::ErrorMessage;
    if (isError && answer.errorName() == helpernames::leavingError && attempt == Attempt::First) {
        send(call, Attempt::Second);
        invalidateIfDue();
        return;
    }
    if (!isError && answer.signature() == call.replySignature) {
        call.replied(answer);
    } else {
        call.failed(errorText(answer, call.replySignature));
    }
    if (isError && isUndelivered(answer)) {
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
