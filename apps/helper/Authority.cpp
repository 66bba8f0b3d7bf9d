#include "apps/helper/Authority.h"

#include "apps/helper/Reply.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QMap>
#include <QString>
#include <QVariantMap>

namespace quorvane {

/// polkit's name for whom a question is about: (sa{sv}).
struct PolkitSubject {
    QString kind;
    QVariantMap details;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PolkitSubject& subject) {
    argument.beginStructure();
    argument << subject.kind << subject.details;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PolkitSubject& subject) {
    argument.beginStructure();
    argument >> subject.kind >> subject.details;
    argument.endStructure();
    return argument;
}

namespace {

using PolkitDetails = QMap<QString, QString>;

constexpr int decisionLimit = 10000; // milliseconds
constexpr quint32 noInteraction = 0;

QDBusMessage question(const QString& sender, const QString& action) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.PolicyKit1"),
                                       QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
                                       QStringLiteral("org.freedesktop.PolicyKit1.Authority"),
                                       QStringLiteral("CheckAuthorization"));
    const PolkitSubject subject{QStringLiteral("system-bus-name"),
                                {{QStringLiteral("name"), sender}}};
    call.setArguments({QVariant::fromValue(subject), action, QVariant::fromValue(PolkitDetails()),
                       noInteraction, QString()});
    return call;
}

// The answer is (is authorized, would be if asked for a password, details).
bool isYes(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage ||
        reply.signature() != QLatin1String("(bba{ss})")) {
        return false;
    }
    const auto answer = reply.arguments().at(0).value<QDBusArgument>();
    bool isAuthorized = false;
    bool isChallenge = false;
    PolkitDetails details;
    answer.beginStructure();
    answer >> isAuthorized >> isChallenge >> details;
    answer.endStructure(); // left open, it would keep the message for ever
    return isAuthorized;
}

} // namespace

Authority::Authority(const QDBusConnection& bus) : bus_(bus) {
    qDBusRegisterMetaType<PolkitSubject>();
    qDBusRegisterMetaType<PolkitDetails>();
}

void Authority::check(const QString& sender, const QString& action, const Decided& decided) {
    Reply::expect(bus_.asyncCall(question(sender, action), decisionLimit), this,
                  [decided](const QDBusMessage& reply) { decided(isYes(reply)); });
}

} // namespace quorvane
