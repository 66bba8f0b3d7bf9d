#pragma once

#include "tests/support/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QString>

#include <functional>

namespace quorvane::test {

/// A service of the test's own making on a private bus: for answers that the real one gives only in
/// rare moments. Lives in the test's thread, so it answers only while the event loop runs.
class FakeService final : public QDBusVirtualObject {
  public:
    /// The arguments of the reply to a call.
    using Answers = std::function<QDBusMessage(const QDBusMessage& call)>;

    /// Owns `name` on a connection of its own as long as this object lives.
    FakeService(const PrivateBus& bus, const QString& name, Answers answers);
    ~FakeService() override;
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    /// From now on calls are collected and not answered, until `release`.
    void hold() { holds_ = true; }

    /// Answers what has been collected, and from now on at once.
    void release();

    /// Gives the name up, but stays on the bus and answers what it was asked.
    void giveNameUp();

    /// All calls that came in, in their order.
    [[nodiscard]] const QList<QDBusMessage>& calls() const { return calls_; }

    void emitSignal(const QString& path, const QString& interface, const QString& name,
                    const QVariantList& arguments);

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  private:
    QString connectionName_;
    QDBusConnection connection_;
    QString name_;
    Answers answers_;
    bool holds_ = false;
    QList<QDBusMessage> calls_;
    QList<QDBusMessage> held_;
};

} // namespace quorvane::test
