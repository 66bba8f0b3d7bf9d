#pragma once

#include <QDBusConnection>
#include <QString>

#include <optional>

namespace quorvane {

/// Tells the bus and the service manager that the helper's files have changed, and ends the helper
/// that runs. For an installation; each call waits for its answer. Only for root.
class ServiceManagement {
  public:
    explicit ServiceManagement(const QDBusConnection& bus);

    /// Without a bus or a service manager there is nobody to tell.
    void reload() const;

    /// Ends the running helper and waits until it has left the bus. Returns the error, or nothing.
    [[nodiscard]] std::optional<QString> stop() const;

  private:
    [[nodiscard]] bool isServed() const;

    QDBusConnection bus_;
};

} // namespace quorvane
