#pragma once

#include "platform/linux/displays/LinuxDisplays.h"
#include "platform/linux/processes/ChildSignals.h"
#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <unistd.h>
#include <vector>

/// The value of User.Display: id and path of a session.
struct SessionOfUser {
    QString id;
    QDBusObjectPath path;
};
Q_DECLARE_METATYPE(SessionOfUser)

inline QDBusArgument& operator<<(QDBusArgument& argument, const SessionOfUser& session) {
    argument.beginStructure();
    argument << session.id << session.path;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, SessionOfUser& session) {
    argument.beginStructure();
    argument >> session.id >> session.path;
    argument.endStructure();
    return argument;
}

namespace quorvane::test {

/// The port over backlight devices in a folder, with a logind of the test's own or none.
class LinuxDisplaysFixture : public testing::Test {
  protected:
    void SetUp() override {
        qDBusRegisterMetaType<SessionOfUser>();
        addPanel("panel", "raw", 700, 1000);
        openDisplays();
    }

    void TearDown() override {
        displays.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void openDisplays() {
        displays.reset();
        journal = std::make_unique<PuttingBackJournal>(journalPath(), log);
        displays = std::make_unique<LinuxDisplays>(bus.connection(connectionName), *journal, log,
                                                   folder.path());
    }

    [[nodiscard]] QString journalPath() const {
        return folder.filePath(QStringLiteral("run/quorvane/putting-back.journal"));
    }

    [[nodiscard]] QString panelFolder(const char* name) const {
        return folder.filePath(QStringLiteral("class/backlight/") + QLatin1String(name));
    }

    void setAttribute(const char* panel, const char* attribute, const QByteArray& value) const {
        QFile file(panelFolder(panel) + QLatin1Char('/') + QLatin1String(attribute));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(value + '\n');
    }

    void addPanel(const char* name, const char* type, int raw, int maximum) const {
        QDir().mkpath(panelFolder(name));
        setAttribute(name, "type", type);
        setAttribute(name, "brightness", QByteArray::number(raw));
        setAttribute(name, "max_brightness", QByteArray::number(maximum));
    }

    /// The device's file cannot be written any more; its brightness is read from the other one.
    void forbidWriting(const char* name, int raw) const {
        const QString file = panelFolder(name) + QStringLiteral("/brightness");
        ASSERT_TRUE(QFile::remove(file));
        ASSERT_TRUE(QDir().mkpath(file));
        setAttribute(name, "actual_brightness", QByteArray::number(raw));
    }

    [[nodiscard]] int raw(const char* name = "panel") const {
        return Backlights(folder.path()).raw(QLatin1String(name)).value_or(-1);
    }

    void setRaw(int value) const { setAttribute("panel", "brightness", QByteArray::number(value)); }

    /// A logind that sets what it is asked to. `sets` is the attribute that it writes.
    std::unique_ptr<FakeService> startLogind(const char* sets = "brightness") {
        return std::make_unique<FakeService>(
            bus, logindName, [this, sets](const QDBusMessage& call) {
                if (call.member() != QLatin1String("SetBrightness")) {
                    return call.createReply(QVariant::fromValue(
                        QDBusVariant(QVariant::fromValue(SessionOfUser{displayId, displayPath}))));
                }
                if (call.path() == ownSession && !refusal.isEmpty()) {
                    return call.createErrorReply(
                        QStringLiteral("org.freedesktop.login1.NoSessionForPID"), refusal);
                }
                setAttribute(call.arguments().at(1).toString().toUtf8().constData(), sets,
                             QByteArray::number(call.arguments().at(2).toUInt()));
                return call.createReply();
            });
    }

    /// The values that logind was asked to set, in their order.
    [[nodiscard]] static std::vector<uint> asked(const FakeService& logind) {
        std::vector<uint> values;
        for (const QDBusMessage& call : logind.calls()) {
            if (call.member() == QLatin1String("SetBrightness")) {
                values.push_back(call.arguments().at(2).toUInt());
            }
        }
        return values;
    }

    [[nodiscard]] DisplayId panel() const {
        const Displays::List list = displays->activeDisplays(16);
        return list.displays.empty() ? 0 : list.displays.front();
    }

    [[nodiscard]] float brightness() const { return displays->brightness(panel()).brightness; }

    void dim(float value) const { ASSERT_EQ(displays->setBrightness(panel(), value), 0); }

    [[nodiscard]] bool rawBecomes(int value) const {
        return waitUntil([&] { return raw() == value; });
    }

    /// Runs the event loop until nothing is under way.
    [[nodiscard]] bool settles() const {
        return waitUntil([this] { return displays->waitForWrites(std::chrono::milliseconds(0)); });
    }

    static void pass() {
        [[maybe_unused]] const bool never =
            waitUntil([] { return false; }, std::chrono::milliseconds(200));
    }

    [[nodiscard]] std::vector<DisplayChange> journalled() const {
        std::vector<DisplayChange> changes;
        for (const JournalEntry& entry :
             journal->entries().value_or(PuttingBackJournal::Entries())) {
            changes.push_back(displayChange(entry).value_or(DisplayChange{-1, {}}));
        }
        return changes;
    }

    void journalOf(const JournalWriter& writer, int found, std::vector<int> set,
                   const char* name = "panel") const {
        ASSERT_TRUE(journal->update([&](PuttingBackJournal::Entries& entries) {
            entries.push_back(displayEntry(QLatin1String(name), {found, std::move(set)}, writer));
        }));
    }

    /// Another run of the program that has dimmed the panel, and lives.
    std::unique_ptr<QProcess> startOtherRun(const char* value) const {
        auto process = std::make_unique<QProcess>();
        process->setChildProcessModifier([parent = ::getpid()] { endWithParent(parent, SIGKILL); });
        process->start(QStringLiteral(QUORVANE_DIMMING_PROCESS),
                       {bus.address(), folder.path(), journalPath(), QLatin1String(value)});
        EXPECT_TRUE(waitUntil([&] { return process->readAllStandardOutput().contains("dimmed"); }));
        return process;
    }

    static constexpr std::chrono::seconds limit{10};
    static constexpr QLatin1String logindName{"org.freedesktop.login1"};
    static constexpr QLatin1String ownSession{"/org/freedesktop/login1/session/auto"};

    const QString connectionName = QStringLiteral("displays");
    const JournalWriter dead{1LL << 40, 5};
    PrivateBus bus{PrivateBus::Type::System};
    QTemporaryDir folder;
    RecordingLog log;
    QString refusal; ///< what logind says to a caller's own session
    QString displayId = QStringLiteral("c7");
    QDBusObjectPath displayPath{QStringLiteral("/org/freedesktop/login1/session/c7")};
    std::unique_ptr<PuttingBackJournal> journal;
    std::unique_ptr<LinuxDisplays> displays;
};

} // namespace quorvane::test
