#include "platform/linux/power/UPowerSource.h"

#include "platform/linux/power/UPowerReading.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <algorithm>
#include <chrono>

namespace quorvane {

namespace {

constexpr std::chrono::milliseconds initialPatience{500};

constexpr QLatin1String service("org.freedesktop.UPower");
constexpr QLatin1String daemonPath("/org/freedesktop/UPower");
constexpr QLatin1String daemonInterface("org.freedesktop.UPower");
constexpr QLatin1String deviceInterface("org.freedesktop.UPower.Device");
constexpr QLatin1String propertiesInterface("org.freedesktop.DBus.Properties");

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
    : bus_(systemBus), calls_(systemBus),
      watcher_(service, systemBus, QDBusServiceWatcher::WatchForOwnerChange) {
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*oldOwner*/, const QString& newOwner) {
                setOwner(newOwner);
            });
    readOrStart();
}

void UPowerSource::readOrStart() {
    patience_ = QDeadlineTimer(initialPatience);
    const BusAnswer owner = BusCalls::askAndWait(
        bus_, BusCall::toBus(QStringLiteral("GetNameOwner"), {QString(service)}, initialPatience));
    if (owner.isReply()) {
        setOwner(owner.value().toString());
        calls_.waitForAnswers(); // each has a limit now
    } else {
        calls_.ask(BusCall::toBus(QStringLiteral("StartServiceByName"),
                                  {QString(service), quint32(0)}, BusCall::usualLimit),
                   [](const BusAnswer&) {});
    }
    patience_.reset();
    if (someAnswerWasLate_) {
        const QString sameOwner = owner_;
        forgetOwner();
        setOwner(sameOwner);
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
    calls_.forget();
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
        [this](const BusAnswer& answer) {
            for (const QString& path : objectPaths(answer.message())) {
                addDevice(path);
            }
            devicesAreListed_ = answer.isReply();
            checkReady();
        });
}

void UPowerSource::readDaemon() {
    ask(daemonPath, propertiesInterface, QStringLiteral("GetAll"), {QString(daemonInterface)},
        [this](const BusAnswer& answer) {
            daemon_ = propertyMap(answer.message(), 0).value_or(daemon_);
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
        [this, path](const BusAnswer& answer) {
            takeDevice(path, answer);
            checkReady();
        });
}

void UPowerSource::takeDevice(const QString& path, const BusAnswer& answer) {
    const auto device = devices_.find(path);
    if (device == devices_.end()) {
        return; // removed in the meantime
    }
    const std::optional<QVariantMap> properties = propertyMap(answer.message(), 0);
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
                       const QVariantList& arguments, const BusCalls::Answered& answered) {
    // An answer that takes long is still wanted, only not waited for.
    const std::chrono::milliseconds limit =
        patience_ ? std::chrono::milliseconds(patience_->remainingTime()) : BusCall::noLimit;
    calls_.ask({.service = owner_,
                .path = path,
                .interface = interface,
                .method = method,
                .arguments = arguments,
                .limit = limit},
               [this, answered](const BusAnswer& answer) {
                   someAnswerWasLate_ |= patience_ && answer.kind() == BusAnswer::Kind::Unanswered;
                   answered(answer);
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
