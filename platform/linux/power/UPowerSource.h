#pragma once

#include "platform/linux/common/BusCalls.h"
#include "platform/linux/power/PowerState.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QMap>
#include <QObject>

#include <optional>

namespace quorvane {

/// The machine's power as UPower tells it, kept up to date by its signals. Follows the service as
/// it starts, stops and restarts; whatever a former instance still says is dropped. Main thread
/// only.
class UPowerSource final : public QObject {
    Q_OBJECT

  public:
    /// If UPower runs, waits up to half a second for its first readings; else asks the bus to start
    /// it, and does not wait.
    explicit UPowerSource(const QDBusConnection& systemBus);

    /// Whether UPower runs and has told everything that `state` needs.
    [[nodiscard]] bool isReady() const { return isReady_; }

    /// What the running UPower has told so far.
    [[nodiscard]] PowerState state() const;

  Q_SIGNALS:
    /// `isReady` or `state` may have changed.
    void changed();

  private:
    struct Device {
        QVariantMap properties;
        bool isRead = false; ///< `properties` is complete
    };

    Q_SLOT void daemonPropertiesChanged(const QDBusMessage& signal);
    Q_SLOT void devicePropertiesChanged(const QDBusMessage& signal);
    Q_SLOT void deviceAdded(const QDBusMessage& signal);
    Q_SLOT void deviceRemoved(const QDBusMessage& signal);

    void readOrStart();
    void setOwner(const QString& owner);
    void forgetOwner();
    void readAll();
    void readDaemon();
    void readDevice(const QString& path);
    void takeDevice(const QString& path, const BusAnswer& answer);
    void addDevice(const QString& path);
    void dropDevice(const QString& path);
    void checkReady();
    [[nodiscard]] std::optional<bool> onBattery() const;
    void ask(const QString& path, const QString& interface, const QString& method,
             const QVariantList& arguments, const BusCalls::Answered& answered);
    void subscribe(bool on);
    void subscribeDevice(const QString& path, bool on);

    QDBusConnection bus_;
    BusCalls calls_;
    QDBusServiceWatcher watcher_;
    QString owner_; ///< unique bus name of the running UPower, empty while there is none
    bool isReady_ = false;
    bool daemonIsRead_ = false;
    bool devicesAreListed_ = false;
    QVariantMap daemon_;
    QMap<QString, Device> devices_; ///< by object path; only the machine's own and unread ones
    std::optional<QDeadlineTimer> patience_; ///< only while the constructor waits
    bool someAnswerWasLate_ = false;
};

} // namespace quorvane
