#include "platform/linux/common/ExportedObject.h"

#include <QDBusError>
#include <QDBusVariant>

#include <utility>

namespace quorvane {

namespace {

constexpr QLatin1String propertiesInterface("org.freedesktop.DBus.Properties");
constexpr QLatin1String introspectionInterface("org.freedesktop.DBus.Introspectable");

// Hosts do ask for the properties of these as well.
bool hasNoProperties(const QString& interface) {
    return interface == propertiesInterface || interface == introspectionInterface ||
           interface == QLatin1String("org.freedesktop.DBus.Peer");
}

QDBusMessage unknownMethod(const QDBusMessage& call) {
    return call.createErrorReply(
        QDBusError::UnknownMethod,
        QStringLiteral("There is no method %1 at %2").arg(call.member(), call.path()));
}

QDBusMessage wrongArguments(const QDBusMessage& call, const QString& expected) {
    return call.createErrorReply(QDBusError::InvalidArgs,
                                 QStringLiteral("%1 takes arguments of the types (%2), not (%3)")
                                     .arg(call.member(), expected, call.signature()));
}

} // namespace

ExportedObject::ExportedObject(const QDBusConnection& bus, QString path, QLatin1String interface,
                               QLatin1String description)
    : bus_(bus), path_(std::move(path)), interface_(interface), description_(description),
      isExported_(bus_.registerVirtualObject(path_, this)) {}

ExportedObject::~ExportedObject() {
    if (isExported_) {
        bus_.unregisterObject(path_);
    }
}

QString ExportedObject::introspect(const QString& /*path*/) const {
    return description_;
}

bool ExportedObject::handleMessage(const QDBusMessage& call, const QDBusConnection& bus) {
    if (call.interface() == introspectionInterface) {
        return false; // Qt puts introspection together
    }
    const std::optional<QDBusMessage> reply = answer(call);
    if (reply && call.isReplyRequired()) {
        bus.send(*reply);
    }
    return true;
}

// D-Bus lets a caller leave the interface out.
std::optional<QDBusMessage> ExportedObject::answer(const QDBusMessage& call) const {
    if (call.interface() == propertiesInterface) {
        return accessProperties(call);
    }
    if (call.interface().isEmpty() || call.interface() == interface_) {
        return callMethod(call);
    }
    return call.createErrorReply(
        QDBusError::UnknownInterface,
        QStringLiteral("There is no interface %1 at %2").arg(call.interface(), call.path()));
}

std::optional<QDBusMessage> ExportedObject::callMethod(const QDBusMessage& call) const {
    const auto found = methods_.constFind(call.member());
    if (found == methods_.constEnd()) {
        return unknownMethod(call);
    }
    if (call.signature() != found->signature) {
        return wrongArguments(call, found->signature);
    }
    return found->method(call);
}

QDBusMessage ExportedObject::accessProperties(const QDBusMessage& call) const {
    static const QHash<QString, QString> signatures{{QStringLiteral("Get"), QStringLiteral("ss")},
                                                    {QStringLiteral("GetAll"), QStringLiteral("s")},
                                                    {QStringLiteral("Set"), QStringLiteral("ssv")}};
    const QString signature = signatures.value(call.member());
    if (signature.isEmpty()) {
        return unknownMethod(call);
    }
    if (call.signature() != signature) {
        return wrongArguments(call, signature);
    }
    const QString interface = call.arguments().at(0).toString();
    if (call.member() == QLatin1String("GetAll") && hasNoProperties(interface)) {
        return call.createReply(QVariantMap());
    }
    if (!interface.isEmpty() && interface != interface_) {
        return call.createErrorReply(
            QDBusError::UnknownInterface,
            QStringLiteral("There is no interface %1 at %2").arg(interface, call.path()));
    }
    if (call.member() == QLatin1String("GetAll")) {
        return call.createReply(allProperties());
    }
    const QString name = call.arguments().at(1).toString();
    return call.member() == QLatin1String("Get") ? getProperty(call, name)
                                                 : refuseToSet(call, name);
}

QDBusMessage ExportedObject::getProperty(const QDBusMessage& call, const QString& name) const {
    const auto found = properties_.constFind(name);
    if (found == properties_.constEnd()) {
        return call.createErrorReply(QDBusError::UnknownProperty,
                                     QStringLiteral("There is no property %1").arg(name));
    }
    return call.createReply(QVariant::fromValue(QDBusVariant((*found)())));
}

QDBusMessage ExportedObject::refuseToSet(const QDBusMessage& call, const QString& name) const {
    const bool isKnown = properties_.contains(name);
    return call.createErrorReply(isKnown ? QDBusError::PropertyReadOnly
                                         : QDBusError::UnknownProperty,
                                 isKnown ? QStringLiteral("%1 is read-only").arg(name)
                                         : QStringLiteral("There is no property %1").arg(name));
}

QVariantMap ExportedObject::allProperties() const {
    QVariantMap all;
    for (auto property = properties_.constBegin(); property != properties_.constEnd(); ++property) {
        all.insert(property.key(), (*property)());
    }
    return all;
}

void ExportedObject::addMethod(QLatin1String name, QLatin1String signature, Method method) {
    methods_.insert(name, {signature, std::move(method)});
}

void ExportedObject::addDeferredMethod(QLatin1String name, QLatin1String signature,
                                       DeferredMethod method) {
    const auto defer = [method = std::move(method)](const QDBusMessage& call) {
        method(call);
        return std::optional<QDBusMessage>();
    };
    methods_.insert(name, {signature, defer});
}

void ExportedObject::addProperty(QLatin1String name, const std::function<QVariant()>& read) {
    properties_.insert(name, read);
}

void ExportedObject::emitSignal(QLatin1String name, const QVariantList& arguments) {
    if (!isExported_) {
        return;
    }
    QDBusMessage signal = QDBusMessage::createSignal(path_, interface_, name);
    signal.setArguments(arguments);
    bus_.send(signal);
}

} // namespace quorvane
