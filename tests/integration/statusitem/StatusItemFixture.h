#pragma once

#include "platform/linux/statusitem/LinuxStatusBar.h"
#include "tests/integration/statusitem/SampleMenu.h"
#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/SignalRecorder.h"
#include "tests/support/WaitUntil.h"

#include <QDBusError>
#include <QDBusPendingCall>
#include <gmock/gmock.h>

namespace quorvane::test {

/// A status item with the sample menu on a private bus, and a host of another connection that
/// looks at it. Nobody collects the items.
class StatusItemFixture : public testing::Test {
  protected:
    static constexpr auto itemPath = "/StatusNotifierItem";
    static constexpr auto menuPath = "/MenuBar";

    StatusItemFixture() { registerDBusMenuTypes(); }

    ~StatusItemFixture() override {
        item_.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("program"));
        QDBusConnection::disconnectFromBus(QStringLiteral("host"));
    }

    void SetUp() override {
        ASSERT_TRUE(bus_.isRunning());
        ASSERT_TRUE(program_.isConnected());
        item_ = bar_.statusItemWithLength(StatusItem::variableLength);
        item_->setMenu(menu_.root());
        item_->setImage(QStringLiteral("icon-infinity-off"));
        settle();
        itemSignals_.clear();
        menuSignals_.clear();
    }

    [[nodiscard]] QDBusMessage ask(const QString& path, const QString& interface,
                                   const QString& member, const QVariantList& arguments = {}) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(program_.baseService(), path, interface, member);
        call.setArguments(arguments);
        const QDBusPendingCall pending = host_.asyncCall(call);
        EXPECT_TRUE(waitUntil([&pending] { return pending.isFinished(); })) << member.toStdString();
        QCoreApplication::processEvents(); // signals that came before the reply
        return pending.reply();
    }

    [[nodiscard]] QDBusMessage askItem(const char* member, const QVariantList& arguments = {}) {
        return ask(QLatin1String(itemPath), statusNotifierInterface, QLatin1String(member),
                   arguments);
    }

    [[nodiscard]] QDBusMessage askMenu(const char* member, const QVariantList& arguments = {}) {
        return ask(QLatin1String(menuPath), dbusMenuInterface, QLatin1String(member), arguments);
    }

    [[nodiscard]] QDBusMessage askProperties(const char* member, const QVariantList& arguments) {
        return ask(QLatin1String(itemPath), QStringLiteral("org.freedesktop.DBus.Properties"),
                   QLatin1String(member), arguments);
    }

    [[nodiscard]] QVariant property(const char* name) {
        const QDBusMessage reply =
            askProperties("Get", {QString(statusNotifierInterface), QLatin1String(name)});
        EXPECT_EQ(reply.errorName(), QString()) << name;
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    [[nodiscard]] DBusMenuLayout layout(int parent = 0, int depth = -1,
                                        const QStringList& names = {}) {
        const QDBusMessage reply = askMenu("GetLayout", {parent, depth, names});
        EXPECT_EQ(reply.errorName(), QString());
        return qdbus_cast<DBusMenuLayout>(reply.arguments().value(1));
    }

    QDBusMessage sendEvent(int id, const char* type) {
        return askMenu("Event",
                       {id, QLatin1String(type), QVariant::fromValue(QDBusVariant(0)), 0U});
    }

    /// Until the program has done everything and all its signals are here.
    void settle() {
        const QDBusMessage reply = askMenu("AboutToShowGroup", {QVariant::fromValue(QList<int>())});
        ASSERT_EQ(reply.errorName(), QString());
    }

    PrivateBus bus_{PrivateBus::Type::Session};
    QDBusConnection program_ = bus_.connection(QStringLiteral("program"));
    QDBusConnection host_ = bus_.connection(QStringLiteral("host"));
    RecordingLog log_;
    QString images_ = QLatin1String(QUORVANE_TEST_FIXTURES) + QLatin1String("/status-images");
    QStringList clicks_;
    SampleMenu menu_{[this](const QString& name) { clicks_.append(name); }};
    LinuxStatusBar bar_{program_, log_, images_};
    std::unique_ptr<StatusItem> item_;
    SignalRecorder itemSignals_{host_, program_.baseService(), QLatin1String(itemPath),
                                statusNotifierInterface};
    SignalRecorder menuSignals_{host_, program_.baseService(), QLatin1String(menuPath),
                                dbusMenuInterface};
};

} // namespace quorvane::test
