#include "apps/helper/Authority.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QMap>
#include <QString>
#include <QVariantMap>

#include <chrono>

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

constexpr std::chrono::seconds decisionLimit{10};
constexpr quint32 noInteraction = 0;

BusCall question(const QString& sender, const QString& action) {
    const PolkitSubject subject{QStringLiteral("system-bus-name"),
                                {{QStringLiteral("name"), sender}}};
    return {.service = QStringLiteral("org.freedesktop.PolicyKit1"),
            .path = QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
            .interface = QStringLiteral("org.freedesktop.PolicyKit1.Authority"),
            .method = QStringLiteral("CheckAuthorization"),
            .arguments = {QVariant::fromValue(subject), action,
                          QVariant::fromValue(PolkitDetails()), noInteraction, QString()},
            .limit = decisionLimit};
}

// The answer is (is authorized, would be if asked for a password, details).
bool isYes(const BusAnswer& decision) {
    if (!decision.isReplyOf(QLatin1String("(bba{ss})"))) {
        return false;
    }
    const auto answer = decision.value().value<QDBusArgument>();
    bool isAuthorized = false;
    bool isChallenge = false;
    PolkitDetails details;
    answer.beginStructure();
    answer >> isAuthorized >> isChallenge >> details;
    answer.endStructure(); // left open, it would keep the message for ever
    return isAuthorized;
}

} // namespace

Authority::Authority(const QDBusConnection& bus) : calls_(bus) {
    qDBusRegisterMetaType<PolkitSubject>();
    qDBusRegisterMetaType<PolkitDetails>();
}

void Authority::check(const QString& sender, const QString& action, const Decided& decided) {
    calls_.ask(question(sender, action),
               [decided](const BusAnswer& answer) { decided(isYes(answer)); });
}

} // namespace quorvane
