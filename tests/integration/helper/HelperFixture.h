#pragma once

#include "platform/HelperToolProtocol.h"
#include "platform/linux/common/HelperNames.h"
#include "platform/linux/helperclient/LinuxHelperTransport.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QThread>
#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>

namespace quorvane::test {

/// What handlers on threads of connections were called with, in order.
class HandlerRecord {
  public:
    void note(const QString& event) {
        const std::lock_guard lock(mutex_);
        events_.append(event);
        threads_.append(QThread::currentThread());
    }

    [[nodiscard]] QStringList events() const {
        const std::lock_guard lock(mutex_);
        return events_;
    }

    [[nodiscard]] qsizetype count(const char* event) const {
        return events().count(QLatin1String(event));
    }

    /// The threads that they were called on.
    [[nodiscard]] QList<QThread*> threads() const {
        const std::lock_guard lock(mutex_);
        return threads_;
    }

  private:
    mutable std::mutex mutex_;
    QStringList events_;
    QList<QThread*> threads_;
};

/// The transport over a bus of the test's own that starts a helper of the test's own.
class HelperFixture : public testing::Test {
  protected:
    void SetUp() override {
        installHelper();
        transport = std::make_unique<LinuxHelperTransport>(bus->connection(connectionName));
        connect();
    }

    void TearDown() override {
        connection.reset();
        transport.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void installHelper() const {
        QFile file(bus->serviceFolder() + QStringLiteral("/helper.service"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[D-BUS Service]\nName=" + QByteArray(helpernames::label.latin1()) +
                   "\nExec=" QUORVANE_HELPER_PROCESS " " + QFile::encodeName(bus->folder()) + "\n");
    }

    void uninstallHelper() const {
        ASSERT_TRUE(QFile::remove(bus->serviceFolder() + QStringLiteral("/helper.service")));
    }

    /// A fresh connection in the place of the last one.
    void connect() {
        connection = transport->connectTo(helpernames::label);
        connection->setInvalidationHandler([this] { record.note(QStringLiteral("invalid")); });
        connection->resume();
    }

    [[nodiscard]] std::shared_ptr<HelperToolProtocol> proxy() {
        return connection->remoteObjectProxy(
            [this](const QString& error) { record.note(QStringLiteral("error ") + error); });
    }

    [[nodiscard]] HelperToolProtocol::StatusReply noteReply() {
        return [this](const QString& reply) { record.note(reply); };
    }

    void load(const char* path) { proxy()->loadModuleNamed(QLatin1String(path), noteReply()); }

    void behave(const char* behaviour) const {
        QFile file(bus->folder() + QStringLiteral("/behaviour"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(behaviour);
    }

    /// What has reached a helper, without its process id.
    [[nodiscard]] QStringList calls() const {
        QFile file(bus->folder() + QStringLiteral("/calls"));
        QStringList lines;
        if (file.open(QIODevice::ReadOnly)) {
            for (const QString& line :
                 QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
                lines.append(line.section(QLatin1Char(' '), 1).trimmed());
            }
        }
        return lines;
    }

    void endHelper() const {
        QDBusMessage call = QDBusMessage::createMethodCall(
            helpernames::label, helpernames::path, helpernames::label, QStringLiteral("End"));
        call.setAutoStartService(false);
        bus->connection(connectionName).send(call);
    }

    [[nodiscard]] bool happens(const QStringList& events) const {
        return waitUntil([&] { return record.events().size() >= events.size(); }) &&
               record.events() == events;
    }

    [[nodiscard]] bool happens(const char* event) const {
        return waitUntil([&] { return record.count(event) > 0; });
    }

    /// Time for something to happen that must not.
    static void settle() {
        [[maybe_unused]] const bool never =
            waitUntil([] { return false; }, std::chrono::milliseconds(200));
    }

    const QString connectionName = QStringLiteral("helper-client");
    std::unique_ptr<PrivateBus> bus = std::make_unique<PrivateBus>(PrivateBus::Type::System);
    HandlerRecord record;
    std::unique_ptr<LinuxHelperTransport> transport;
    std::unique_ptr<HelperConnection> connection;
};

} // namespace quorvane::test
