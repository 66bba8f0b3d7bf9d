#include "platform/linux/common/BusCalls.h"
#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/WaitUntil.h"

#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QFile>
#include <QSemaphore>
#include <QThread>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>
#include <ostream>

namespace quorvane {

// For the tests' messages.
void PrintTo(BusAnswer::Kind kind, std::ostream* stream) {
    switch (kind) {
    case BusAnswer::Kind::Reply:
        *stream << "Reply";
        break;
    case BusAnswer::Kind::Refused:
        *stream << "Refused";
        break;
    case BusAnswer::Kind::Unanswered:
        *stream << "Unanswered";
        break;
    case BusAnswer::Kind::Absent:
        *stream << "Absent";
        break;
    }
}

} // namespace quorvane

namespace quorvane::test {
namespace {

using Kind = BusAnswer::Kind;

constexpr std::chrono::milliseconds shortLimit{50};

class BusCallTest : public testing::Test {
  protected:
    void TearDown() override {
        calls.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    /// A question to the tests' own service.
    [[nodiscard]] BusCall question(const QString& method,
                                   std::chrono::milliseconds limit = BusCall::usualLimit) const {
        return {.service = serviceName,
                .path = QStringLiteral("/object"),
                .interface = QStringLiteral("com.example.Interface"),
                .method = method,
                .arguments = {QStringLiteral("word"), 7},
                .limit = limit};
    }

    [[nodiscard]] static BusCall names() {
        return BusCall::toBus(QStringLiteral("ListNames"), {}, BusCall::usualLimit);
    }

    [[nodiscard]] std::unique_ptr<FakeService> service() const {
        return std::make_unique<FakeService>(*bus, serviceName, [](const QDBusMessage& call) {
            if (call.member() == QLatin1String("Refuse")) {
                return call.createErrorReply(QStringLiteral("com.example.Error.Never"),
                                             QStringLiteral("not for you"));
            }
            if (call.member() == QLatin1String("RefuseWithoutWords")) {
                return call.createErrorReply(QStringLiteral("com.example.Error.Never"), {});
            }
            if (call.member() == QLatin1String("RefuseAs")) {
                return call.createErrorReply(call.arguments().constFirst().toString(), {});
            }
            if (call.member() == QLatin1String("Get")) {
                return call.createReply(QVariant::fromValue(QDBusVariant(QStringLiteral("blue"))));
            }
            return call.createReply(call.arguments());
        });
    }

    void providesService(const QByteArray& command) const {
        QFile file(bus->serviceFolder() + QStringLiteral("/example.service"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[D-BUS Service]\nName=" + serviceName.toUtf8() + "\nExec=" + command + "\n");
    }

    void ask(const BusCall& call) {
        calls->ask(call, [this](const BusAnswer& given) {
            ++answers;
            openInAnswer = calls->open();
            answer = given;
        });
    }

    /// Asks, and runs the event loop until the answer is there.
    [[nodiscard]] Kind kindOf(const BusCall& call) {
        const int before = answers;
        ask(call);
        EXPECT_EQ(answers, before) << "answered before asking had returned";
        EXPECT_TRUE(waitUntil([&] { return answers > before; }));
        return answer.kind();
    }

    const QString serviceName = QStringLiteral("com.example.Service");
    const QString connectionName = QStringLiteral("bus-calls");
    std::unique_ptr<PrivateBus> bus = std::make_unique<PrivateBus>(PrivateBus::Type::Session);
    std::unique_ptr<BusCalls> calls = std::make_unique<BusCalls>(bus->connection(connectionName));
    int answers = 0;
    int openInAnswer = -1;
    BusAnswer answer;
};

TEST_F(BusCallTest, Reply_ComesOnceWithItsValues) {
    const auto fake = service();
    EXPECT_EQ(kindOf(question(QStringLiteral("Echo"))), Kind::Reply);
    EXPECT_TRUE(answer.isFromService());
    EXPECT_TRUE(answer.isReplyOf(QLatin1String("si")));
    EXPECT_FALSE(answer.isReplyOf(QLatin1String("s")));
    EXPECT_EQ(answer.value(), QVariant(QStringLiteral("word")));
    EXPECT_EQ(answer.value(1), QVariant(7));
    EXPECT_FALSE(answer.value(2).isValid());
    EXPECT_EQ(answer.errorText(), QString());
    const QDBusMessage call = fake->calls().constFirst();
    EXPECT_EQ(call.path(), QStringLiteral("/object"));
    EXPECT_EQ(call.interface(), QStringLiteral("com.example.Interface"));
    EXPECT_FALSE(waitUntil([this] { return answers > 1; }, shortLimit));
}

TEST_F(BusCallTest, ValueOfAType_IsThereOnlyInAReplyOfJustThatType) {
    const auto fake = service();
    BusCall call = question(QStringLiteral("Echo"));
    call.arguments = {7U};
    EXPECT_EQ(kindOf(call), Kind::Reply);
    const Result<QVariant> number = answer.valueOf(QLatin1String("u"));
    ASSERT_TRUE(number);
    EXPECT_EQ(*number, QVariant(7U));
    EXPECT_EQ(answer.valueOf(QLatin1String("i")).error(),
              QStringLiteral("org.freedesktop.DBus.Error.InvalidSignature"));
    EXPECT_EQ(kindOf(question(QStringLiteral("Refuse"))), Kind::Refused);
    EXPECT_EQ(answer.valueOf(QLatin1String("s")).error(),
              QStringLiteral("com.example.Error.Never"));
}

TEST_F(BusCallTest, Property_IsTakenOutOfItsVariant) {
    const auto fake = service();
    EXPECT_EQ(kindOf(question(QStringLiteral("Get"))), Kind::Reply);
    EXPECT_EQ(answer.property(), QVariant(QStringLiteral("blue")));
}

TEST_F(BusCallTest, ErrorOfTheService_IsTheServicesAndHasNoValues) {
    const auto fake = service();
    EXPECT_EQ(kindOf(question(QStringLiteral("Refuse"))), Kind::Refused);
    EXPECT_TRUE(answer.isFromService());
    EXPECT_EQ(answer.errorName(), QStringLiteral("com.example.Error.Never"));
    EXPECT_EQ(answer.errorText(), QStringLiteral("not for you"));
    EXPECT_FALSE(answer.value().isValid()) << "the error's text is no value";
    EXPECT_FALSE(answer.isReplyOf(QLatin1String("s")));
    EXPECT_EQ(kindOf(question(QStringLiteral("RefuseWithoutWords"))), Kind::Refused);
    EXPECT_EQ(answer.errorText(), QStringLiteral("com.example.Error.Never"));
}

TEST_F(BusCallTest, NamesOfErrors_TellWhetherTheServiceHasAnswered) {
    const auto fake = service();
    const auto kindOfError = [this](const char* name) {
        BusCall call = question(QStringLiteral("RefuseAs"));
        call.arguments = {QStringLiteral("org.freedesktop.DBus.Error.") + QLatin1String(name)};
        return kindOf(call);
    };
    for (const char* name : {"ServiceUnknown", "NameHasNoOwner", "NoServer", "Disconnected",
                             "Spawn.ChildExited", "Spawn.ServiceNotFound"}) {
        EXPECT_EQ(kindOfError(name), Kind::Absent) << name;
    }
    for (const char* name : {"NoReply", "Timeout", "TimedOut"}) {
        EXPECT_EQ(kindOfError(name), Kind::Unanswered) << name;
    }
    for (const char* name : {"AccessDenied", "Failed", "UnknownMethod", "UnknownInterface",
                             "UnknownObject", "InvalidArgs", "LimitsExceeded", "NotSupported"}) {
        EXPECT_EQ(kindOfError(name), Kind::Refused) << name;
    }
}

TEST_F(BusCallTest, ServiceThatNobodyKnows_IsAbsent) {
    EXPECT_EQ(kindOf(question(QStringLiteral("Echo"))), Kind::Absent);
    EXPECT_FALSE(answer.isFromService());
    EXPECT_EQ(answer.errorName(), QStringLiteral("org.freedesktop.DBus.Error.ServiceUnknown"));
}

TEST_F(BusCallTest, ServiceThatDoesNotRun_IsAbsentAndStartedOnlyOnRequest) {
    const QString trace = bus->folder() + QStringLiteral("/started");
    providesService("/bin/sh -c \"/usr/bin/touch " + QFile::encodeName(trace) + "; exit 1\"");
    BusCall call = question(QStringLiteral("Echo"));
    call.autostart = BusCall::Autostart::No;
    EXPECT_EQ(kindOf(call), Kind::Absent);
    EXPECT_EQ(answer.errorName(), QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner"));
    EXPECT_FALSE(QFile::exists(trace));

    call.autostart = BusCall::Autostart::Yes;
    EXPECT_EQ(kindOf(call), Kind::Absent);
    EXPECT_TRUE(QFile::exists(trace));
}

TEST_F(BusCallTest, ServiceThatCannotBeStarted_IsAbsent) {
    providesService("/nonexistent/program");
    EXPECT_EQ(kindOf(question(QStringLiteral("Echo"))), Kind::Absent);
    EXPECT_TRUE(answer.errorName().startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn.")))
        << answer.errorName().toStdString();
}

TEST_F(BusCallTest, ServiceThatIsLate_IsUnansweredAndNotHeardLater) {
    const auto fake = service();
    fake->hold();
    EXPECT_EQ(kindOf(question(QStringLiteral("Echo"), shortLimit)), Kind::Unanswered);
    EXPECT_FALSE(answer.isFromService());
    ASSERT_EQ(fake->calls().size(), 1);
    fake->release();
    EXPECT_FALSE(waitUntil([this] { return answers > 1; }, shortLimit));
}

TEST_F(BusCallTest, ServiceThatLeavesBeforeItAnswers_IsUnanswered) {
    auto fake = service();
    fake->hold();
    ask(question(QStringLiteral("Echo"), BusCall::noLimit));
    ASSERT_TRUE(waitUntil([&] { return !fake->calls().isEmpty(); }));
    fake.reset();
    ASSERT_TRUE(waitUntil([this] { return answers == 1; }));
    EXPECT_EQ(answer.kind(), Kind::Unanswered);
}

TEST_F(BusCallTest, Limits_AreToldToTheLibraryInItsOwnNumbers) {
    EXPECT_EQ(question({}, BusCall::noLimit).timeout(), std::numeric_limits<int>::max());
    EXPECT_EQ(question({}, std::chrono::seconds(3)).timeout(), 3000);
    EXPECT_EQ(question({}, std::chrono::milliseconds(0)).timeout(), 1);
    EXPECT_EQ(question({}, std::chrono::milliseconds(-5)).timeout(), 1);
}

TEST_F(BusCallTest, OpenCalls_AreCountedUntilTheirAnswersRun) {
    const auto fake = service();
    EXPECT_EQ(calls->open(), 0);
    fake->hold();
    ask(question(QStringLiteral("Echo")));
    ask(question(QStringLiteral("Refuse")));
    EXPECT_EQ(calls->open(), 2);
    ASSERT_TRUE(waitUntil([&] { return fake->calls().size() == 2; }));
    EXPECT_EQ(calls->open(), 2);
    fake->release();
    ASSERT_TRUE(waitUntil([this] { return answers == 2; }));
    EXPECT_EQ(openInAnswer, 0);
    EXPECT_EQ(calls->open(), 0);
}

TEST_F(BusCallTest, WithoutABus_TheAnswerComesLaterLikeAnyOther) {
    calls = std::make_unique<BusCalls>(QDBusConnection(QStringLiteral("no such bus")));
    EXPECT_EQ(kindOf(names()), Kind::Absent);
    EXPECT_EQ(answer.errorName(), QStringLiteral("org.freedesktop.DBus.Error.Disconnected"));

    ask(names());
    EXPECT_EQ(calls->open(), 1);
    calls->deliverAnswers();
    EXPECT_EQ(answers, 2) << "without an event loop";

    ask(names());
    calls->waitForAnswers();
    EXPECT_EQ(answers, 3) << "by waiting";

    ask(names());
    calls.reset();
    EXPECT_FALSE(waitUntil([this] { return answers > 3; }, shortLimit));
}

TEST_F(BusCallTest, BusThatEnds_AnswersWhatIsOpenAndWhatIsAskedLater) {
    const auto fake = service();
    fake->hold();
    ask(question(QStringLiteral("Echo"), BusCall::noLimit));
    ASSERT_TRUE(waitUntil([&] { return !fake->calls().isEmpty(); }));
    bus->stop();
    ASSERT_TRUE(waitUntil([this] { return answers == 1; }));
    EXPECT_FALSE(answer.isFromService());
    EXPECT_EQ(kindOf(question(QStringLiteral("Echo"))), Kind::Absent);
}

TEST_F(BusCallTest, OwnerThatIsGone_HearsNothing) {
    const auto fake = service();
    fake->hold();
    ask(question(QStringLiteral("Echo")));
    ASSERT_TRUE(waitUntil([&] { return !fake->calls().isEmpty(); }));
    fake->release();
    calls.reset();
    EXPECT_FALSE(waitUntil([this] { return answers > 0; }, shortLimit));
}

TEST_F(BusCallTest, CallsThatAreForgotten_AreNotOpenAndNotHeardOf) {
    const auto fake = service();
    fake->hold();
    ask(question(QStringLiteral("Echo")));
    ask(question(QStringLiteral("Echo")));
    ASSERT_TRUE(waitUntil([&] { return fake->calls().size() == 2; }));
    calls->forget();
    EXPECT_EQ(calls->open(), 0);
    fake->release();
    EXPECT_FALSE(waitUntil([this] { return answers > 0; }, shortLimit));
    EXPECT_EQ(kindOf(question(QStringLiteral("Echo"))), Kind::Reply) << "it goes on";
}

TEST_F(BusCallTest, AnswerMayForgetTheOthersOrDestroyWhoAsked) {
    calls->ask(names(), [this](const BusAnswer&) { calls->forget(); });
    ask(names());
    calls->waitForAnswers();
    EXPECT_EQ(answers, 0);

    calls->ask(names(), [this](const BusAnswer&) { calls.reset(); });
    ask(names());
    calls->waitForAnswers();
    EXPECT_EQ(calls, nullptr);
    EXPECT_EQ(answers, 0);
}

TEST_F(BusCallTest, Waiting_IncludesWhatTheAnswersAsk) {
    std::optional<bool> isOwned;
    calls->ask(names(), [&](const BusAnswer& list) {
        const QString own = list.value().toStringList().last();
        calls->ask(BusCall::toBus(QStringLiteral("NameHasOwner"), {own}, BusCall::usualLimit),
                   [&](const BusAnswer& owned) { isOwned = owned.value().toBool(); });
    });
    calls->waitForAnswers();
    EXPECT_EQ(isOwned, std::optional(true));
}

TEST_F(BusCallTest, AnswersThatHaveArrived_AreDeliveredWithoutAnEventLoop) {
    ask(names());
    const QDeadlineTimer deadline(10000);
    while (calls->open() > 0 && !deadline.hasExpired()) {
        QThread::msleep(1);
        calls->deliverAnswers();
    }
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(answer.kind(), Kind::Reply);
}

TEST_F(BusCallTest, Delivering_DoesNotWait) {
    const auto fake = service();
    fake->hold();
    ask(question(QStringLiteral("Echo")));
    calls->deliverAnswers();
    EXPECT_EQ(calls->open(), 1);
}

TEST_F(BusCallTest, AskingAndWaiting_GivesTheBusesAnswerOrThatThereIsNone) {
    const QDBusConnection connection = bus->connection(connectionName);
    EXPECT_TRUE(BusCalls::askAndWait(connection, names())
                    .value()
                    .toStringList()
                    .contains(connection.baseService()));
    // It would answer in this thread, which waits.
    const auto fake = service();
    const QDeadlineTimer librarysLimit(std::chrono::seconds(20));
    EXPECT_EQ(BusCalls::askAndWait(connection, question(QStringLiteral("Echo"), shortLimit)).kind(),
              Kind::Unanswered);
    EXPECT_FALSE(librarysLimit.hasExpired());
    EXPECT_EQ(BusCalls::askAndWait(QDBusConnection(QStringLiteral("no such bus")), names()).kind(),
              Kind::Absent);
}

TEST_F(BusCallTest, OnAnotherThread_AnswersRunThere) {
    QThread thread;
    thread.start();
    const auto worker = std::make_unique<QObject>();
    auto* const own = new BusCalls(bus->connection(connectionName), worker.get());
    worker->moveToThread(&thread);
    QSemaphore answered;
    const QThread* answeredOn = nullptr;
    QMetaObject::invokeMethod(
        worker.get(),
        [&] {
            own->ask(names(), [&](const BusAnswer&) {
                answeredOn = QThread::currentThread();
                answered.release();
            });
        },
        Qt::QueuedConnection);
    // No event loop runs here: nobody but the thread can deliver it.
    EXPECT_TRUE(answered.tryAcquire(1, 10000));
    thread.quit();
    thread.wait();
    EXPECT_EQ(answeredOn, &thread);
}

} // namespace
} // namespace quorvane::test
