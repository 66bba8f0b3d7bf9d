#include "platform/linux/UPowerSource.h"

#include "platform/linux/UPowerReading.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <chrono>
#include <limits>

namespace quorvane {

namespace {

constexpr std::chrono::milliseconds initialPatience{500};

// D-Bus knows this number as "no time limit". An answer that takes long is still wanted, and when
// the service leaves, the bus itself answers.
constexpr int noTimeLimit = std::numeric_limits<int>::max();

constexpr QLatin1String service("org.freedesktop.UPower");
constexpr QLatin1String daemonPath("/org/freedesktop/UPower");
constexpr QLatin1String daemonInterface("org.freedesktop.UPower");
constexpr QLatin1String deviceInterface("org.freedesktop.UPower.Device");
constexpr QLatin1String propertiesInterface("org.freedesktop.DBus.Properties");

QDBusMessage busCall(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), method);
    call.setArguments(arguments);
    return call;
}

/// The argument as a{sv}, or nothing when it is of another type.
std::optional<QVariantMap> propertyMap(const QDBusMessage& message, qsizetype index) {
    const auto argument = message.arguments().value(index).value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("a{sv}")) {
        return std::nullopt;
    }
    return qdbus_cast<QVariantMap>(argument);
}

QString objectPath(const QDBusMessage& message) {
    return message.arguments().value(0).value<QDBusObjectPath>().path();
}

QStringList objectPaths(const QDBusMessage& message) {
    const auto argument = message.arguments().value(0).value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("ao")) {
        return {};
    }
    QStringList paths;
    for (const auto& path : qdbus_cast<QList<QDBusObjectPath>>(argument)) {
        paths.append(path.path());
    }
    return paths;
}

bool isAbout(const QDBusMessage& propertiesChanged, QLatin1String interface) {
    return propertiesChanged.arguments().value(0).toString() == interface;
}

/// Takes over the values that a PropertiesChanged signal carries. Returns whether there are further
/// changes, which it names without a value.
bool applyChange(const QDBusMessage& propertiesChanged, QVariantMap& properties) {
    if (const std::optional<QVariantMap> values = propertyMap(propertiesChanged, 1)) {
        properties.insert(*values);
    }
    return !propertiesChanged.arguments().value(2).toStringList().isEmpty();
}

} // namespace

UPowerSource::UPowerSource(const QDBusConnection& systemBus)
    : bus_(systemBus), watcher_(service, systemBus, QDBusServiceWatcher::WatchForOwnerChange) {
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*oldOwner*/, const QString& newOwner) {
                setOwner(newOwner);
            });
    readOrStart();
}

void UPowerSource::readOrStart() {
    patience_ = QDeadlineTimer(initialPatience);
    const QDBusMessage owner =
        bus_.call(busCall(QStringLiteral("GetNameOwner"), {QString(service)}), QDBus::Block,
                  static_cast<int>(patience_->remainingTime()));
    if (owner.type() == QDBusMessage::ReplyMessage) {
        setOwner(owner.arguments().value(0).toString());
        waitForAnswers();
    } else {
        bus_.asyncCall(
            busCall(QStringLiteral("StartServiceByName"), {QString(service), quint32(0)}));
    }
    patience_.reset();
    if (someAnswerWasLate_) {
        const QString sameOwner = owner_;
        forgetOwner();
        setOwner(sameOwner);
    }
}

/// Every call of this phase has a time limit, so every wait ends.
void UPowerSource::waitForAnswers() {
    while (!openCalls_.isEmpty()) {
        openCalls_.first()->waitForFinished();
    }
}

void UPowerSource::setOwner(const QString& owner) {
    if (owner == owner_) {
        return;
    }
    forgetOwner();
    owner_ = owner;
    if (!owner_.isEmpty()) {
        subscribe(true);
        readAll();
    }
    Q_EMIT changed();
}

void UPowerSource::forgetOwner() {
    if (owner_.isEmpty()) {
        return;
    }
    qDeleteAll(openCalls_);
    openCalls_.clear();
    for (auto device = devices_.keyBegin(); device != devices_.keyEnd(); ++device) {
        subscribeDevice(*device, false);
    }
    subscribe(false);
    devices_.clear();
    daemon_.clear();
    isReady_ = daemonIsRead_ = devicesAreListed_ = false;
    owner_.clear();
}

void UPowerSource::readAll() {
    readDaemon();
    ask(daemonPath, daemonInterface, QStringLiteral("EnumerateDevices"), {},
        [this](const QDBusMessage& reply) {
            for (const QString& path : objectPaths(reply)) {
                addDevice(path);
            }
            devicesAreListed_ = reply.type() == QDBusMessage::ReplyMessage;
            checkReady();
        });
}

void UPowerSource::readDaemon() {
    ask(daemonPath, propertiesInterface, QStringLiteral("GetAll"), {QString(daemonInterface)},
        [this](const QDBusMessage& reply) {
            daemon_ = propertyMap(reply, 0).value_or(daemon_);
            daemonIsRead_ = onBattery().has_value();
            checkReady();
        });
}

void UPowerSource::addDevice(const QString& path) {
    if (path.isEmpty() || devices_.contains(path)) {
        return;
    }
    devices_.insert(path, {});
    // Before asking, or a change in between would be missed.
    subscribeDevice(path, true);
    readDevice(path);
}

void UPowerSource::readDevice(const QString& path) {
    ask(path, propertiesInterface, QStringLiteral("GetAll"), {QString(deviceInterface)},
        [this, path](const QDBusMessage& reply) {
            takeDevice(path, reply);
            checkReady();
        });
}

void UPowerSource::takeDevice(const QString& path, const QDBusMessage& reply) {
    const auto device = devices_.find(path);
    if (device == devices_.end()) {
        return; // removed in the meantime
    }
    const std::optional<QVariantMap> properties = propertyMap(reply, 0);
    if (!properties || !powersTheMachine(*properties)) {
        dropDevice(path);
        return;
    }
    device->properties = *properties;
    device->isRead = true;
}

void UPowerSource::dropDevice(const QString& path) {
    if (devices_.remove(path) > 0) {
        subscribeDevice(path, false);
    }
}

void UPowerSource::checkReady() {
    const bool allRead = std::all_of(devices_.begin(), devices_.end(),
                                     [](const Device& device) { return device.isRead; });
    isReady_ = isReady_ || (daemonIsRead_ && devicesAreListed_ && allRead);
    if (isReady_) {
        Q_EMIT changed();
    }
}

std::optional<bool> UPowerSource::onBattery() const {
    const QVariant value = daemon_.value(QStringLiteral("OnBattery"));
    return value.typeId() == QMetaType::Bool ? std::optional(value.toBool()) : std::nullopt;
}

PowerState UPowerSource::state() const {
    PowerState state;
    state.onBattery = onBattery();
    for (const Device& device : devices_) {
        if (device.isRead) {
            state.batteries.push_back(readingFromUPower(device.properties));
        }
    }
    return state;
}

void UPowerSource::daemonPropertiesChanged(const QDBusMessage& signal) {
    if (!isAbout(signal, daemonInterface)) {
        return;
    }
    if (applyChange(signal, daemon_)) {
        readDaemon();
    }
    Q_EMIT changed();
}

void UPowerSource::devicePropertiesChanged(const QDBusMessage& signal) {
    const auto device = devices_.find(signal.path());
    if (device == devices_.end() || !isAbout(signal, deviceInterface)) {
        return;
    }
    if (applyChange(signal, device->properties)) {
        readDevice(signal.path());
    }
    Q_EMIT changed();
}

void UPowerSource::deviceAdded(const QDBusMessage& signal) {
    addDevice(objectPath(signal));
}

void UPowerSource::deviceRemoved(const QDBusMessage& signal) {
    dropDevice(objectPath(signal));
    checkReady();
}

void UPowerSource::ask(const QString& path, const QString& interface, const QString& method,
                       const QVariantList& arguments, const Handler& handler) {
    QDBusMessage call = QDBusMessage::createMethodCall(owner_, path, interface, method);
    call.setArguments(arguments);
    const int timeLimit =
        patience_ ? std::max(1, static_cast<int>(patience_->remainingTime())) : noTimeLimit;
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call, timeLimit), this);
    openCalls_.append(watcher);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, handler] {
        openCalls_.removeOne(watcher);
        watcher->deleteLater();
        someAnswerWasLate_ |= patience_ && watcher->error().type() == QDBusError::NoReply;
        handler(watcher->reply());
    });
}

void UPowerSource::subscribe(bool on) {
    const auto set = [this, on](const QString& interface, const QString& name, const char* slot) {
        return on ? bus_.connect(owner_, daemonPath, interface, name, this, slot)
                  : bus_.disconnect(owner_, daemonPath, interface, name, this, slot);
    };
    set(propertiesInterface, QStringLiteral("PropertiesChanged"),
        SLOT(daemonPropertiesChanged(QDBusMessage)));
    set(daemonInterface, QStringLiteral("DeviceAdded"), SLOT(deviceAdded(QDBusMessage)));
    set(daemonInterface, QStringLiteral("DeviceRemoved"), SLOT(deviceRemoved(QDBusMessage)));
}

/// One device at a time: a mouse's battery shall not wake us.
void UPowerSource::subscribeDevice(const QString& path, bool on) {
    const QString name = QStringLiteral("PropertiesChanged");
    const char* const slot = SLOT(devicePropertiesChanged(QDBusMessage));
    if (on) {
        bus_.connect(owner_, path, propertiesInterface, name, this, slot);
    } else {
        bus_.disconnect(owner_, path, propertiesInterface, name, this, slot);
    }
}

} // namespace quorvane
