#pragma once

#include "tests/support/PrivateBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace quorvane::test {

/// A notification server on a connection of its own that does exactly what a test tells it to.
/// Runs on the test's event loop.
class FakeNotificationServer final : public QDBusVirtualObject {
  public:
    enum class Replies { AtOnce, Held, Errors };

    /// One Notify call.
    struct Request {
        QString signature;
        QString applicationName;
        uint replacesId = 0;
        QString icon;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
        int expireTimeout = -1; ///< milliseconds
        uint id = 0;            ///< what it was, or will be, answered with
    };

    explicit FakeNotificationServer(const PrivateBus& bus, QStringList capabilities = everything());
    FakeNotificationServer(const FakeNotificationServer&) = delete;
    FakeNotificationServer& operator=(const FakeNotificationServer&) = delete;

    /// Leaves the bus, as a server that dies.
    ~FakeNotificationServer() override;

    static QStringList everything();

    /// Becomes the session's notification server, in place of another one where there is one.
    bool takeName();
    void releaseName();

    void setNextId(uint id) { nextId_ = id; }

    void setCapabilityReplies(Replies replies) { capabilityReplies_ = replies; }

    void setNotifyReplies(Replies replies) { notifyReplies_ = replies; }

    /// Answers what was held, oldest first, and from now on at once.
    void answerHeld();

    /// To everybody, or only to the connection `destination`.
    void invokeAction(uint id, const QString& key, const QString& destination = {});
    void sendClosed(uint id, const QString& destination = {});
    void sendSignal(const QString& name, const QVariantList& arguments,
                    const QString& destination = {});

    /// Returns when the bus has passed on everything that was sent so far.
    void flush();

    [[nodiscard]] const std::vector<Request>& requests() const { return requests_; }

    [[nodiscard]] const std::vector<uint>& closeRequests() const { return closeRequests_; }

    [[nodiscard]] int capabilityRequests() const { return capabilityRequests_; }

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  private:
    void reply(const QDBusMessage& message, const QDBusMessage& answer, Replies replies);
    [[nodiscard]] QDBusMessage remember(const QDBusMessage& notify);

    QString connectionName_;
    QDBusConnection connection_;
    QStringList capabilities_;
    Replies capabilityReplies_ = Replies::AtOnce;
    Replies notifyReplies_ = Replies::AtOnce;
    uint nextId_ = 1;
    int capabilityRequests_ = 0;
    std::vector<Request> requests_;
    std::vector<uint> closeRequests_;
    std::vector<QDBusMessage> held_;
};

} // namespace quorvane::test
