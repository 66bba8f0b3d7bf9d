#include "platform/linux/common/BusAnswer.h"

#include <QDBusError>
#include <QDBusVariant>

namespace quorvane {

namespace {

// The one list of what comes from a bus and not from a service. QDBusError does not know all of the
// names. AccessDenied is not among them: the bus's rules and services give it alike, and it means
// the same from both.
BusAnswer::Kind kindOf(const QDBusMessage& message) {
    if (message.type() == QDBusMessage::ReplyMessage) {
        return BusAnswer::Kind::Reply;
    }
    switch (QDBusError(message).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        return BusAnswer::Kind::Unanswered;
    case QDBusError::ServiceUnknown:
    case QDBusError::NoServer:
    case QDBusError::Disconnected:
        return BusAnswer::Kind::Absent;
    default:
        break;
    }
    const QString name = message.errorName();
    const bool isAbsent = name == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner") ||
                          name.startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn."));
    return isAbsent ? BusAnswer::Kind::Absent : BusAnswer::Kind::Refused;
}

} // namespace

BusAnswer::BusAnswer(const QDBusMessage& message) : message_(message), kind_(kindOf(message)) {}

bool BusAnswer::isReplyOf(QLatin1String signature) const {
    return isReply() && message_.signature() == signature;
}

QVariant BusAnswer::value(qsizetype index) const {
    return isReply() ? message_.arguments().value(index) : QVariant();
}

Result<QVariant> BusAnswer::valueOf(QLatin1String signature) const {
    if (isReplyOf(signature)) {
        return value();
    }
    return Failure{isReply() ? QDBusError::errorString(QDBusError::InvalidSignature) : errorName()};
}

QVariant BusAnswer::property() const {
    return value().value<QDBusVariant>().variant();
}

QString BusAnswer::errorName() const {
    return message_.errorName();
}

QString BusAnswer::errorText() const {
    return message_.errorMessage().isEmpty() ? message_.errorName() : message_.errorMessage();
}

} // namespace quorvane
