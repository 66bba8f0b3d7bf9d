#pragma once

#include "tests/support/Daemon.h"

#include <QDBusConnection>
#include <QTemporaryDir>

namespace quorvane::test {

/// A message bus of the test's own, so that no service of the machine is seen or touched.
class PrivateBus {
  public:
    enum class Type { Session, System };

    /// Starts the bus and waits until it can be connected to.
    explicit PrivateBus(Type type);

    [[nodiscard]] bool isRunning() const { return daemon_.isRunning(); }

    /// As when the machine's bus crashes.
    void stop() { daemon_.kill(); }

    /// "unix:path=..."; also put into the test's environment as DBUS_SESSION_BUS_ADDRESS or
    /// DBUS_SYSTEM_BUS_ADDRESS, so that children find it.
    [[nodiscard]] QString address() const { return address_; }

    /// Scratch folder that ends with the bus; for sockets and logs of the services on it.
    [[nodiscard]] QString folder() const { return folder_.path(); }

    /// The folder whose .service files the bus starts on demand.
    [[nodiscard]] QString serviceFolder() const {
        return folder_.filePath(QLatin1String("services"));
    }

    /// A new connection of its own; the caller's to drop with QDBusConnection::disconnectFromBus.
    [[nodiscard]] QDBusConnection connection(const QString& name) const;

    /// Whether somebody owns this name now.
    [[nodiscard]] bool hasOwner(const QString& busName) const;

  private:
    QTemporaryDir folder_;
    QString address_;
    Daemon daemon_;
};

} // namespace quorvane::test
