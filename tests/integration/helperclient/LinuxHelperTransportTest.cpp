#include "platform/linux/helperclient/LinuxHelperTransport.h"

#include "core/SharedInstances.h"
#include "helperclient/HelperTool.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/helperclient/LoadedExtensions.h"
#include "tests/integration/helper/HelperFixture.h"
#include "tests/support/FakeService.h"

#include <QDBusConnectionInterface>
#include <QSemaphore>

namespace quorvane::test {
namespace {

class LinuxHelperTransportTest : public HelperFixture {};

const QString unknownService =
    QStringLiteral("error org.freedesktop.DBus.Error.ServiceUnknown: The name "
                   "com.TarnwickStudios.quorvane.helper was not provided by any .service files");

const QString leftError = QStringLiteral(
    "error org.freedesktop.DBus.Error.NoReply: Message recipient disconnected from message bus "
    "without replying");

TEST_F(LinuxHelperTransportTest, Commands_AreAnsweredInOrderOnOneThreadOfTheConnectionsOwn) {
    const auto commands = proxy();
    commands->loadModuleNamed(QStringLiteral("/a b.kext"), noteReply());
    commands->unloadModuleNamed(QStringLiteral("/a b.kext"), noteReply());
    commands->enableLowPowerMode(noteReply());
    commands->disableLowPowerMode(noteReply());
    commands->getVersion(noteReply());
    commands->getTaskPowerMetrics(
        [this](const QStringList& lines) { record.note(lines.join(QLatin1Char('|'))); });
    EXPECT_TRUE(happens({QStringLiteral("done LoadModuleNamed /a b.kext"),
                         QStringLiteral("done UnloadModuleNamed /a b.kext"),
                         QStringLiteral("done EnableLowPowerMode "),
                         QStringLiteral("done DisableLowPowerMode "), QStringLiteral("7"),
                         QStringLiteral("first line|second line")}));
    const QList<QThread*> threads = record.threads();
    EXPECT_EQ(threads.count(threads.constFirst()), threads.size());
    EXPECT_NE(threads.constFirst(), QThread::currentThread());
}

TEST_F(LinuxHelperTransportTest, MainThreadThatWaits_GetsTheReplyAllTheSame) {
    const auto arrived = std::make_shared<QSemaphore>();
    proxy()->getVersion([arrived](const QString&) { arrived->release(); });
    EXPECT_TRUE(arrived->tryAcquire(1, 20000)) << "no event loop runs here";
}

TEST_F(LinuxHelperTransportTest, HelperThatIsNotInstalled_FailsOnceAndThenInvalidates) {
    uninstallHelper();
    load("/x.kext");
    EXPECT_TRUE(happens({unknownService, QStringLiteral("invalid")}));
    EXPECT_FALSE(record.threads().contains(QThread::currentThread()));
    settle();
    EXPECT_EQ(record.events().size(), 2);
}

TEST_F(LinuxHelperTransportTest, SeveralCommandsForAHelperThatIsNotInstalled_InvalidateOnce) {
    uninstallHelper();
    load("/x.kext");
    load("/y.kext");
    // The first one's end may be told of before the second one is sent.
    EXPECT_TRUE(waitUntil([this] { return record.events().size() == 3; }));
    settle();
    EXPECT_EQ(record.events().count(unknownService), 2);
    EXPECT_EQ(record.events().count(QStringLiteral("invalid")), 1);
    EXPECT_EQ(record.events().size(), 3);
}

TEST_F(LinuxHelperTransportTest, HelperThatLeaves_InvalidatesOnceAndTheNextConnectionStartsIt) {
    load("/x.kext");
    ASSERT_TRUE(happens("done LoadModuleNamed /x.kext"));
    endHelper();
    ASSERT_TRUE(happens("invalid"));
    connect();
    load("/y.kext");
    EXPECT_TRUE(happens({QStringLiteral("done LoadModuleNamed /x.kext"), QStringLiteral("invalid"),
                         QStringLiteral("done LoadModuleNamed /y.kext")}));
}

TEST_F(LinuxHelperTransportTest, HelperThatIsReplacedByAnother_InvalidatesOnce) {
    FakeService first(*bus, helpernames::label,
                      [](const QDBusMessage& call) { return call.createReply(call.member()); });
    load("/x.kext");
    ASSERT_TRUE(happens("LoadModuleNamed"));
    // Waits for its turn, so that the name goes from one to the other.
    const QString secondName = QStringLiteral("second-helper");
    QDBusConnection second = bus->connection(secondName);
    second.interface()->registerService(helpernames::label, QDBusConnectionInterface::QueueService);
    first.giveNameUp();
    EXPECT_TRUE(happens("invalid"));
    settle();
    EXPECT_EQ(record.count("invalid"), 1);
    QDBusConnection::disconnectFromBus(secondName);
}

TEST_F(LinuxHelperTransportTest, HelperThatRestartsBetweenTwoCommands_LosesNone) {
    load("/x.kext");
    ASSERT_TRUE(happens("done LoadModuleNamed /x.kext"));
    endHelper();
    ASSERT_TRUE(waitUntil([this] { return !bus->hasOwner(helpernames::label); }));
    load("/y.kext"); // on the same connection, whose owner has not got round to dropping it
    EXPECT_TRUE(happens("done LoadModuleNamed /y.kext"));
    EXPECT_TRUE(happens("invalid"));
    EXPECT_EQ(calls(), (QStringList{QStringLiteral("LoadModuleNamed /x.kext"),
                                    QStringLiteral("LoadModuleNamed /y.kext")}));
}

TEST_F(LinuxHelperTransportTest,
       HelperThatLeavesOverACall_FailsOnceThenInvalidatesAndCanBeReached) {
    behave("die");
    load("/x.kext");
    EXPECT_TRUE(happens({leftError, QStringLiteral("invalid")}));
    behave("answer");
    connect();
    load("/y.kext");
    EXPECT_TRUE(happens(
        {leftError, QStringLiteral("invalid"), QStringLiteral("done LoadModuleNamed /y.kext")}));
}

TEST_F(LinuxHelperTransportTest, HelperThatLeavesOverSeveralCalls_FailsEachBeforeItInvalidates) {
    behave("silent");
    load("/x.kext");
    load("/y.kext");
    ASSERT_TRUE(waitUntil([this] { return calls().size() == 2; }));
    endHelper();
    EXPECT_TRUE(happens({leftError, leftError, QStringLiteral("invalid")}));
}

TEST_F(LinuxHelperTransportTest, SilentHelper_LeavesTheCommandOpenAndTheConnectionCanBeDropped) {
    behave("silent");
    const auto arrived = std::make_shared<QSemaphore>();
    proxy()->getVersion([arrived](const QString&) { arrived->release(); });
    ASSERT_TRUE(waitUntil([this] { return !calls().isEmpty(); }));
    EXPECT_FALSE(arrived->tryAcquire(1, 100));
    EXPECT_FALSE(transport->waitForPending(std::chrono::milliseconds(50)));
    connection.reset();
    EXPECT_TRUE(transport->waitForPending(std::chrono::milliseconds(0)));
    endHelper();
    settle();
    EXPECT_TRUE(record.events().isEmpty());
}

TEST_F(LinuxHelperTransportTest, RepliesOfWrongTypes_AreErrorsAndDoNotInvalidate) {
    behave("wrong");
    load("/x.kext");
    proxy()->getTaskPowerMetrics([this](const QStringList&) { record.note({}); });
    EXPECT_TRUE(
        happens({QStringLiteral("error the reply is of the type \"i\" in place of \"s\""),
                 QStringLiteral("error the reply is of the type \"i\" in place of \"as\"")}));
    settle();
    EXPECT_EQ(record.count("invalid"), 0);
}

TEST_F(LinuxHelperTransportTest, Denial_IsAnErrorAndDoesNotInvalidate) {
    behave("deny");
    load("/x.kext");
    EXPECT_TRUE(happens("error org.freedesktop.DBus.Error.AccessDenied: not you"));
    behave("answer");
    load("/y.kext");
    EXPECT_TRUE(happens("done LoadModuleNamed /y.kext"));
    EXPECT_EQ(record.count("invalid"), 0);
}

TEST_F(LinuxHelperTransportTest, ErrorOfManyLines_IsToldAsOneShortLineWithoutControlCharacters) {
    behave("garbage");
    load("/x.kext");
    ASSERT_TRUE(waitUntil([this] { return !record.events().isEmpty(); }));
    const QString error = record.events().constFirst();
    EXPECT_TRUE(error.startsWith(QStringLiteral("error com.example.Error: one two [31m xxx")))
        << error.toStdString();
    EXPECT_EQ(error.size(), QStringLiteral("error ").size() + 200);
}

TEST_F(LinuxHelperTransportTest, CallThatReachesALeavingHelper_IsSentAgain) {
    behave("leave");
    load("/x.kext");
    EXPECT_TRUE(happens("done LoadModuleNamed /x.kext"));
    EXPECT_TRUE(happens("invalid"));
    EXPECT_EQ(calls().size(), 2);
    EXPECT_EQ(record.events().size(), 2) << "no error is told";
}

TEST_F(LinuxHelperTransportTest, CallThatReachesALeavingHelperTwice_Fails) {
    behave("always-leave");
    load("/x.kext");
    EXPECT_TRUE(happens("error com.TarnwickStudios.quorvane.helper.Error.Leaving: about to leave"));
    EXPECT_TRUE(happens("invalid"));
    settle();
    EXPECT_EQ(calls().size(), 2);
    EXPECT_EQ(record.events().size(), 2);
}

TEST_F(LinuxHelperTransportTest, CommandsDuringAnInstallation_WaitAndAreSentInOrder) {
    transport->holdCommands();
    load("/x.kext");
    proxy()->getVersion(noteReply());
    settle();
    EXPECT_TRUE(record.events().isEmpty());
    EXPECT_TRUE(calls().isEmpty());
    transport->releaseCommands(std::nullopt);
    EXPECT_TRUE(happens({QStringLiteral("done LoadModuleNamed /x.kext"), QStringLiteral("7")}));
}

TEST_F(LinuxHelperTransportTest, CommandsDuringAnInstallationThatFails_FailWithItsError) {
    transport->holdCommands();
    load("/x.kext");
    proxy()->getVersion(noteReply());
    transport->releaseCommands(QStringLiteral("the prompt was closed"));
    EXPECT_TRUE(happens({QStringLiteral("error the prompt was closed"),
                         QStringLiteral("error the prompt was closed")}));
    EXPECT_FALSE(record.threads().contains(QThread::currentThread()));
    EXPECT_TRUE(calls().isEmpty());
    load("/y.kext");
    EXPECT_TRUE(happens("done LoadModuleNamed /y.kext"));
}

TEST_F(LinuxHelperTransportTest, CommandThatWaitsOnAnInvalidConnection_OutlivesIt) {
    connection->invalidate();
    ASSERT_TRUE(happens("invalid"));
    transport->holdCommands();
    load("/x.kext");
    connection.reset();
    transport->releaseCommands(std::nullopt);
    EXPECT_TRUE(happens("done LoadModuleNamed /x.kext"));
}

TEST_F(LinuxHelperTransportTest, CommandThatWaitsOnAValidConnection_IsDroppedWithIt) {
    transport->holdCommands();
    load("/x.kext");
    connection.reset();
    transport->releaseCommands(std::nullopt);
    settle();
    EXPECT_TRUE(record.events().isEmpty());
    EXPECT_TRUE(calls().isEmpty());
}

TEST_F(LinuxHelperTransportTest, Invalidate_TellsOnceOnTheConnectionsThread) {
    connection->invalidate();
    connection->invalidate();
    EXPECT_TRUE(happens("invalid"));
    settle();
    EXPECT_EQ(record.events(), QStringList{QStringLiteral("invalid")});
    EXPECT_FALSE(record.threads().contains(QThread::currentThread()));
}

TEST_F(LinuxHelperTransportTest, InvalidateDuringACall_LetsItBeAnswered) {
    load("/x.kext");
    connection->invalidate();
    connection.reset();
    EXPECT_TRUE(happens("done LoadModuleNamed /x.kext"));
}

TEST_F(LinuxHelperTransportTest, WhenIdle_RunsAtOnceOrOnTheMainThreadAfterTheLastAnswer) {
    bool isIdle = false;
    transport->whenIdle([&isIdle] { isIdle = true; });
    EXPECT_TRUE(isIdle);

    FakeService helper(*bus, helpernames::label,
                       [](const QDBusMessage& call) { return call.createReply(call.member()); });
    helper.hold();
    load("/x.kext");
    load("/y.kext");
    isIdle = false;
    transport->whenIdle([&] {
        isIdle = true;
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        EXPECT_EQ(record.events().size(), 2) << "the handlers come first";
    });
    ASSERT_TRUE(waitUntil([&helper] { return helper.calls().size() == 2; }));
    settle();
    EXPECT_FALSE(isIdle);
    helper.release();
    EXPECT_TRUE(waitUntil([&isIdle] { return isIdle; }));
}

TEST_F(LinuxHelperTransportTest, WaitForPending_ReturnsAfterTheHandler) {
    load("/x.kext");
    EXPECT_TRUE(transport->waitForPending(std::chrono::seconds(20))) << "no event loop runs here";
    EXPECT_EQ(record.events(), QStringList{QStringLiteral("done LoadModuleNamed /x.kext")});
}

TEST_F(LinuxHelperTransportTest, ClosedTransport_TellsNothingAnyMoreAndSendsNothing) {
    behave("silent");
    load("/x.kext");
    ASSERT_TRUE(waitUntil([this] { return !calls().isEmpty(); }));
    transport->close();
    load("/y.kext");
    endHelper();
    settle();
    EXPECT_TRUE(record.events().isEmpty());
    EXPECT_EQ(calls().size(), 1);
}

TEST_F(LinuxHelperTransportTest, WithoutABus_CommandsFailOnTheConnectionsThread) {
    connection.reset();
    transport =
        std::make_unique<LinuxHelperTransport>(QDBusConnection(QStringLiteral("no such bus")));
    connect();
    load("/x.kext");
    EXPECT_TRUE(happens(
        {QStringLiteral("error org.freedesktop.DBus.Error.Disconnected: Not connected to D-Bus "
                        "server"),
         QStringLiteral("invalid")}));
    EXPECT_FALSE(record.threads().contains(QThread::currentThread()));
}

TEST_F(LinuxHelperTransportTest, BusThatEndsOverACall_FailsOnceAndThenInvalidates) {
    behave("silent");
    load("/x.kext");
    ASSERT_TRUE(waitUntil([this] { return !calls().isEmpty(); }));
    bus.reset();
    ASSERT_TRUE(happens("invalid"));
    EXPECT_EQ(record.events().size(), 2);
    EXPECT_TRUE(record.events().constFirst().startsWith(QStringLiteral("error ")));
    load("/y.kext");
    EXPECT_TRUE(waitUntil([this] { return record.events().size() == 3; }));
}

/// The program's own platform over the test's buses.
class HelperOfTheProgramTest : public HelperFixture {
  protected:
    void SetUp() override {
        HelperFixture::SetUp();
        SharedInstances::reset(std::make_unique<LinuxPlatform>(
            session.connection(sessionName), bus->connection(connectionName),
            std::make_unique<PuttingBack>([this] { return bus->connection(connectionName); })));
    }

    void TearDown() override {
        SharedInstances::reset(nullptr);
        QDBusConnection::disconnectFromBus(sessionName);
        HelperFixture::TearDown();
    }

    const QString sessionName = QStringLiteral("helper-session");
    PrivateBus session{PrivateBus::Type::Session};
};

TEST_F(HelperOfTheProgramTest, ListerOfExtensions_IsAnsweredByTheProgramItself) {
    const auto task = platform().tasks().task(QStringLiteral("/usr/sbin/kextstat"),
                                              {QStringLiteral("-b"), QStringLiteral("no.such")});
    ASSERT_TRUE(task->launch());
    EXPECT_FALSE(task->isRunning());
    EXPECT_EQ(task->readOutput(),
              QByteArray(loadedExtensionsHeader.data(),
                         static_cast<qsizetype>(loadedExtensionsHeader.size())));
}

TEST_F(HelperOfTheProgramTest, Command_WaitsForTheInstallationAndFailsWithItsError) {
    HelperInstaller& installer = platform().helperInstaller();
    if (installer.isInstalled(HelperTool::label())) {
        GTEST_SKIP() << "skipped: a helper is installed on this machine";
    }
    connection = platform().helperTransport().connectTo(HelperTool::label());
    installer.install(HelperTool::label(), [this](const std::optional<QString>& error) {
        record.note(QStringLiteral("install ") + error.value_or(QString()));
    });
    load("/x.kext");
    EXPECT_TRUE(happens({QStringLiteral("install this bundle carries no helper"),
                         QStringLiteral("error this bundle carries no helper")}));
    EXPECT_TRUE(calls().isEmpty());
    load("/y.kext");
    EXPECT_TRUE(happens("done LoadModuleNamed /y.kext"));
    connection.reset();
}

TEST_F(HelperOfTheProgramTest, Sleep_IsToldByThePlatform) {
    const QString logind = QStringLiteral("org.freedesktop.login1");
    FakeService service(*bus, logind, [](const QDBusMessage& call) { return call.createReply(); });
    QStringList told;
    QObject::connect(&platform().sleepEvents(), &SleepEvents::willSleep,
                     [&told] { told.append(QStringLiteral("sleep")); });
    QObject::connect(&platform().sleepEvents(), &SleepEvents::didWake,
                     [&told] { told.append(QStringLiteral("wake")); });
    ASSERT_TRUE(waitUntil([&service] { return !service.calls().isEmpty(); }));
    for (const bool begins : {true, false}) {
        service.emitSignal(QStringLiteral("/org/freedesktop/login1"),
                           QStringLiteral("org.freedesktop.login1.Manager"),
                           QStringLiteral("PrepareForSleep"), {begins});
    }
    EXPECT_TRUE(waitUntil([&told] { return told.size() == 2; }));
    EXPECT_EQ(told, (QStringList{QStringLiteral("sleep"), QStringLiteral("wake")}));
}

TEST_F(HelperOfTheProgramTest, Version_IsAskedWhileTheMainThreadWaits) {
    EXPECT_EQ(HelperTool::helperTool().versionNumber(), 7.0);
    EXPECT_EQ(HelperTool::helperTool().versionNumber(), 7.0);
    EXPECT_EQ(calls(), QStringList{QStringLiteral("GetVersion")});
}

} // namespace
} // namespace quorvane::test
