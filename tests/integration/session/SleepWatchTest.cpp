#include "platform/linux/session/SleepWatch.h"

#include "tests/integration/helper/HelperFixture.h"
#include "tests/support/FakeLaptop.h"
#include "tests/support/FakeService.h"
#include "tests/support/RecordingLog.h"

#include <QDBusArgument>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDir>

#include <array>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace quorvane::test {
namespace {

const QString logindName = QStringLiteral("org.freedesktop.login1");
const QString logindPath = QStringLiteral("/org/freedesktop/login1");
const QString logindManager = QStringLiteral("org.freedesktop.login1.Manager");

class SleepWatchFixture : public HelperFixture {
  protected:
    void TearDown() override {
        watch.reset();
        HelperFixture::TearDown();
    }

    void openWatch() {
        watch = std::make_unique<SleepWatch>(
            bus->connection(connectionName), log,
            [this](std::function<void()> block) { transport->whenIdle(std::move(block)); });
        QObject::connect(watch.get(), &SleepWatch::willSleep, [this] {
            told.append(QStringLiteral("will sleep"));
            if (asksHelper) {
                load("/x.kext");
            }
        });
        QObject::connect(watch.get(), &SleepWatch::didWake,
                         [this] { told.append(QStringLiteral("did wake")); });
    }

    [[nodiscard]] bool takesLock() const {
        return waitUntil([this] { return watch->holdsLock(); });
    }

    [[nodiscard]] bool isTold(const QStringList& lines) const {
        return waitUntil([&] { return told.size() >= lines.size(); }) && told == lines;
    }

    [[nodiscard]] std::unique_ptr<FakeService> patientHelper() const {
        auto helper =
            std::make_unique<FakeService>(*bus, helpernames::label, [](const QDBusMessage& call) {
                return call.createReply(call.member());
            });
        helper->hold();
        return helper;
    }

    RecordingLog log;
    QStringList told;
    bool asksHelper = false; ///< over a sleep
    std::unique_ptr<SleepWatch> watch;
};

/// Over the real logind.
class LogindSleepTest : public SleepWatchFixture {
  protected:
    void SetUp() override {
        for (const QString& reason : {FakeLaptop::whyNot(), FakeLaptop::whyNoLogind()}) {
            if (!reason.isEmpty()) {
                GTEST_SKIP() << "skipped: " << reason.toStdString();
            }
        }
        SleepWatchFixture::SetUp();
        laptop = std::make_unique<FakeLaptop>(*bus);
        ASSERT_TRUE(laptop->isUp());
        // A laptop that can sleep.
        ASSERT_TRUE(QDir().mkpath(laptop->sysfs() + QStringLiteral("/power")));
        QFile states(laptop->sysfs() + QStringLiteral("/power/state"));
        ASSERT_TRUE(states.open(QIODevice::WriteOnly));
        states.write("freeze mem\n");
        states.close();
        ASSERT_TRUE(laptop->startLogind());
    }

    void TearDown() override {
        SleepWatchFixture::TearDown();
        QDBusConnection::disconnectFromBus(callerName);
        laptop.reset();
    }

    [[nodiscard]] QDBusMessage ask(const QString& interface, const QString& method,
                                   const QVariantList& arguments = {}) const {
        QDBusMessage call =
            QDBusMessage::createMethodCall(logindName, logindPath, interface, method);
        call.setArguments(arguments);
        return bus->connection(callerName).call(call, QDBus::BlockWithGui);
    }

    void sleep() const {
        const QDBusMessage reply = ask(logindManager, QStringLiteral("Suspend"), {false});
        ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    }

    [[nodiscard]] bool isAboutToSleep() const {
        return ask(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                   {logindManager, QStringLiteral("PreparingForSleep")})
            .arguments()
            .value(0)
            .value<QDBusVariant>()
            .variant()
            .toBool();
    }

    /// Of this program, in logind's own list: what, who, mode.
    [[nodiscard]] QStringList locks() const {
        QStringList found;
        const auto list = ask(logindManager, QStringLiteral("ListInhibitors"))
                              .arguments()
                              .value(0)
                              .value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            std::array<QString, 4> texts;
            uint user = 0;
            uint process = 0;
            list.beginStructure();
            list >> texts[0] >> texts[1] >> texts[2] >> texts[3] >> user >> process;
            list.endStructure();
            if (texts[1] == QLatin1String("Quorvane")) {
                found.append(texts[0] + QLatin1Char(' ') + texts[3]);
            }
        }
        list.endArray();
        return found;
    }

    const QStringList oneLock{QStringLiteral("sleep delay")};
    const QString callerName = QStringLiteral("logind-caller");
    std::unique_ptr<FakeLaptop> laptop;
};

TEST_F(LogindSleepTest, Sleep_WaitsForTheHelpersAnswerAndTheLockIsTakenAgain) {
    openWatch();
    ASSERT_TRUE(takesLock());
    EXPECT_EQ(locks(), oneLock);

    const auto helper = patientHelper();
    asksHelper = true;
    sleep();
    ASSERT_TRUE(isTold({QStringLiteral("will sleep")}));
    ASSERT_TRUE(waitUntil([&helper] { return !helper->calls().isEmpty(); }));
    settle();
    EXPECT_EQ(locks(), oneLock);
    EXPECT_TRUE(isAboutToSleep());
    EXPECT_EQ(told.size(), 1);

    helper->release();
    EXPECT_TRUE(isTold({QStringLiteral("will sleep"), QStringLiteral("did wake")}));
    EXPECT_TRUE(takesLock());
    EXPECT_EQ(locks(), oneLock);
    EXPECT_FALSE(isAboutToSleep());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LogindSleepTest, SleepWithNothingToDo_IsNotHeldUp) {
    openWatch();
    for (int sleeps = 1; sleeps <= 2; ++sleeps) {
        ASSERT_TRUE(takesLock());
        sleep();
        ASSERT_TRUE(waitUntil([&] { return told.size() == 2 * sleeps; }));
    }
    EXPECT_EQ(told.count(QStringLiteral("will sleep")), 2);
    EXPECT_EQ(told.count(QStringLiteral("did wake")), 2);
}

TEST_F(LogindSleepTest, LogindThatIsStartedAgain_IsAskedAgain) {
    openWatch();
    ASSERT_TRUE(takesLock());
    laptop->logind().stop();
    ASSERT_TRUE(waitUntil([this] { return !watch->holdsLock(); }));
    ASSERT_TRUE(laptop->startLogind());
    ASSERT_TRUE(takesLock());
    EXPECT_EQ(locks(), oneLock);
    sleep();
    EXPECT_TRUE(isTold({QStringLiteral("will sleep"), QStringLiteral("did wake")}));
}

TEST_F(LogindSleepTest, LogindThatStartsAfterTheProgram_IsUsed) {
    laptop->logind().stop();
    openWatch();
    settle();
    EXPECT_FALSE(watch->holdsLock());
    ASSERT_TRUE(laptop->startLogind());
    EXPECT_TRUE(takesLock());
    EXPECT_TRUE(log.lines().isEmpty());
}

/// Over a logind that does what it rarely does.
class SleepWatchTest : public SleepWatchFixture {
  protected:
    void SetUp() override {
        SleepWatchFixture::SetUp();
        startLogind();
    }

    void TearDown() override {
        SleepWatchFixture::TearDown();
        logind.reset();
    }

    void startLogind() {
        logind = std::make_unique<FakeService>(*bus, logindName, [this](const QDBusMessage& call) {
            if (refuses) {
                return call.createErrorReply(
                    QStringLiteral("org.freedesktop.DBus.Error.AccessDenied"),
                    QStringLiteral("not you"));
            }
            std::array<int, 2> ends{};
            EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
            const QDBusMessage reply =
                call.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(ends[1])));
            ::close(ends[1]);
            locks.push_back(std::make_unique<QDBusUnixFileDescriptor>());
            locks.back()->giveFileDescriptor(ends[0]);
            return reply;
        });
    }

    void announce(bool begins) const {
        logind->emitSignal(logindPath, logindManager, QStringLiteral("PrepareForSleep"), {begins});
    }

    /// Whether this program holds the lock that it was given first, second ...
    [[nodiscard]] bool isHeld(std::size_t lock) const {
        char byte = 0;
        return ::read(locks.at(lock)->fileDescriptor(), &byte, 1) < 0;
    }

    bool refuses = false;
    std::vector<std::unique_ptr<QDBusUnixFileDescriptor>> locks; ///< logind's ends
    std::unique_ptr<FakeService> logind;
};

TEST_F(SleepWatchTest, Lock_IsADelayOfSleepAndNothingElse) {
    openWatch();
    ASSERT_TRUE(takesLock());
    const QDBusMessage call = logind->calls().constFirst();
    EXPECT_EQ(call.member(), QStringLiteral("Inhibit"));
    EXPECT_EQ(call.arguments().at(0), QStringLiteral("sleep"));
    EXPECT_EQ(call.arguments().at(1), QStringLiteral("Quorvane"));
    EXPECT_EQ(call.arguments().at(3), QStringLiteral("delay"));
    EXPECT_EQ(logind->calls().size(), 1);
}

TEST_F(SleepWatchTest, AnswerThatComesAfterTheSleep_DoesNotReleaseTheNextLock) {
    openWatch();
    ASSERT_TRUE(takesLock());
    const auto helper = patientHelper();
    asksHelper = true;
    announce(true);
    ASSERT_TRUE(isTold({QStringLiteral("will sleep")}));
    announce(false); // logind has lost its patience
    ASSERT_TRUE(isTold({QStringLiteral("will sleep"), QStringLiteral("did wake")}));
    ASSERT_TRUE(waitUntil([this] { return locks.size() == 2 && !isHeld(0); }));
    helper->release();
    ASSERT_TRUE(happens("LoadModuleNamed"));
    settle();
    EXPECT_TRUE(isHeld(1));
    EXPECT_TRUE(watch->holdsLock());
}

TEST_F(SleepWatchTest, LogindThatEndsOverTheSleep_CountsAsWaking) {
    openWatch();
    ASSERT_TRUE(takesLock());
    announce(true);
    ASSERT_TRUE(isTold({QStringLiteral("will sleep")}));
    ASSERT_TRUE(waitUntil([this] { return !isHeld(0); }));
    logind.reset();
    EXPECT_TRUE(isTold({QStringLiteral("will sleep"), QStringLiteral("did wake")}));
    startLogind();
    EXPECT_TRUE(takesLock());
    announce(false);
    settle();
    EXPECT_EQ(told.size(), 2) << "it is awake already";
}

TEST_F(SleepWatchTest, LockThatIsRefused_IsLoggedAndSleepIsToldAllTheSame) {
    refuses = true;
    openWatch();
    ASSERT_TRUE(waitUntil([this] { return !log.lines().isEmpty(); }));
    EXPECT_EQ(log.lines(),
              QStringList{QStringLiteral(
                  "The machine will not wait for Quorvane before it sleeps: not you")});
    announce(true);
    announce(false);
    EXPECT_TRUE(isTold({QStringLiteral("will sleep"), QStringLiteral("did wake")}));
}

TEST_F(SleepWatchTest, AnnouncementOfAnotherProgram_IsNotBelieved) {
    openWatch();
    ASSERT_TRUE(takesLock());
    const FakeService other(*bus, QStringLiteral("com.example.Other"),
                            [](const QDBusMessage& call) { return call.createReply(); });
    QDBusMessage signal =
        QDBusMessage::createSignal(logindPath, logindManager, QStringLiteral("PrepareForSleep"));
    signal.setArguments({true});
    const QString otherName = QStringLiteral("other-program");
    bus->connection(otherName).send(signal);
    settle();
    EXPECT_TRUE(told.isEmpty());
    QDBusConnection::disconnectFromBus(otherName);
}

TEST_F(SleepWatchTest, WithoutLogindOrBus_NothingIsToldAndNothingIsAnError) {
    logind.reset();
    openWatch();
    settle();
    EXPECT_FALSE(watch->holdsLock());
    watch = std::make_unique<SleepWatch>(QDBusConnection(QStringLiteral("no such bus")), log,
                                         [](const std::function<void()>& block) { block(); });
    settle();
    EXPECT_FALSE(watch->holdsLock());
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(told.isEmpty());
}

} // namespace
} // namespace quorvane::test
