#pragma once

#include "platform/linux/notifications/LinuxUserNotifications.h"
#include "tests/support/FakeNotificationServer.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/WaitUntil.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QMutex>
#include <QStringList>
#include <QThread>
#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace quorvane::test {

class RecordingLog final : public LogSink {
  public:
    void write(const QString& line) override {
        const QMutexLocker lock(&mutex_);
        lines_.append(line);
    }

    [[nodiscard]] QStringList lines() const {
        const QMutexLocker lock(&mutex_);
        return lines_;
    }

  private:
    mutable QMutex mutex_;
    QStringList lines_;
};

inline UserNotification question() {
    UserNotification notification;
    notification.title = QStringLiteral("Less Than 70% Battery Remaining");
    notification.informativeText = QStringLiteral("Start Low Power Mode?");
    notification.actionButtonTitle = QStringLiteral("Start");
    notification.otherButtonTitle = QStringLiteral("Not Now");
    notification.userInfo = {{QStringLiteral("kind"), QStringLiteral("question")}};
    return notification;
}

inline UserNotification message(const QString& title) {
    UserNotification notification;
    notification.title = title;
    return notification;
}

/// The notification centre on a private session bus, and what it announces.
class NotificationCenterFixture : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(bus_.isRunning());
        ASSERT_TRUE(connection_.isConnected());
        startCenter();
    }

    void TearDown() override {
        center_.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void startCenter(const NotificationTiming& timing = {}) {
        center_ = std::make_unique<LinuxUserNotifications>(connection_, log_, timing);
        QObject::connect(center_.get(), &UserNotificationCenter::activated, center_.get(),
                         [this](const UserNotification& notification) {
                             EXPECT_EQ(QThread::currentThread(), center_->thread());
                             activated_.append(notification.identifier);
                         });
    }

    /// Returns when everything that was asked for has been answered.
    void finishPending() { ASSERT_TRUE(center_->waitForPending(std::chrono::seconds(60))); }

    /// Puts a service that the bus starts on demand into its service folder.
    void installService(const QString& name, const QString& command) {
        QFile file(bus_.serviceFolder() + QLatin1Char('/') + name + QLatin1String(".service"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            QStringLiteral("[D-BUS Service]\nName=%1\nExec=%2\n").arg(name, command).toUtf8());
        file.close();
        askBus(QStringLiteral("ReloadConfig"));
    }

    /// Blocks until the bus has answered.
    void askBus(const QString& method) {
        connection_.call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), method));
    }

    PrivateBus bus_{PrivateBus::Type::Session};
    QDBusConnection connection_ = connect();
    RecordingLog log_;
    std::unique_ptr<LinuxUserNotifications> center_;
    QStringList activated_; ///< identifiers

  private:
    // The bus's socket is there a moment before anybody listens on it.
    [[nodiscard]] QDBusConnection connect() const {
        EXPECT_TRUE(
            waitUntil([this] { return bus_.hasOwner(QStringLiteral("org.freedesktop.DBus")); }));
        return bus_.connection(connectionName);
    }

    static inline const QString connectionName = QStringLiteral("notification-center");
};

/// The same with a server that does what the test tells it to.
class FakeServerFixture : public NotificationCenterFixture {
  protected:
    void TearDown() override {
        server_.reset();
        NotificationCenterFixture::TearDown();
    }

    void startServer(const QStringList& capabilities = FakeNotificationServer::everything()) {
        server_ = std::make_unique<FakeNotificationServer>(bus_, capabilities);
        ASSERT_TRUE(server_->takeName());
    }

    /// Delivers and returns when the server's answer has arrived.
    UserNotification show(const UserNotification& notification) {
        const UserNotification delivered = center_->deliver(notification);
        finishPending();
        return delivered;
    }

    /// Returns when whatever `server` and the centre have told each other so far has taken effect.
    /// Every message that was sent before a blocking call is through when that returns.
    void settle(FakeNotificationServer& server) {
        constexpr int rounds = 3; // a message may cause another one
        for (int round = 0; round < rounds; ++round) {
            askBus(QStringLiteral("GetId"));
            server.flush();
            askBus(QStringLiteral("GetId"));
            QCoreApplication::processEvents();
        }
    }

    void settle() { settle(*server_); }

    [[nodiscard]] std::size_t requestCount() const { return server_->requests().size(); }

    /// The titles of all notifications that were asked for, in order.
    [[nodiscard]] QStringList summaries() const {
        QStringList list;
        for (const FakeNotificationServer::Request& request : server_->requests()) {
            list.append(request.summary);
        }
        return list;
    }

    [[nodiscard]] bool waitForRequests(std::size_t count) const {
        return waitUntil([&] { return requestCount() >= count; });
    }

    std::unique_ptr<FakeNotificationServer> server_;
};

} // namespace quorvane::test
