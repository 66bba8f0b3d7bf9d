#include "apps/helper/ActionNames.h"
#include "tests/integration/helperclient/RootHelperFixture.h"

#include <QDBusUnixFileDescriptor>

#include <unistd.h>

namespace quorvane::test {
namespace {

class HelperServiceTest : public RootHelperFixture {
  protected:
    void SetUp() override {
        RootHelperFixture::SetUp();
        start();
    }

    HelperCaller caller{bus, QStringLiteral("caller")};
    HelperCaller other{bus, QStringLiteral("other")};
};

const char* const accessDenied = "org.freedesktop.DBus.Error.AccessDenied";

struct Command {
    QLatin1String method;
    QVariantList arguments;
    QString action;
};

QList<Command> allCommands() {
    const QVariantList path{QStringLiteral("/x/DisableTurboBoost.64bits.kext")};
    return {{helpernames::loadModuleNamed, path, actionnames::slowDown},
            {helpernames::unloadModuleNamed, path, actionnames::putBack},
            {helpernames::getTaskPowerMetrics, {}, actionnames::taskPowerMetrics},
            {helpernames::getVersion, {}, actionnames::getVersion},
            {helpernames::enableLowPowerMode, {}, actionnames::slowDown},
            {helpernames::disableLowPowerMode, {}, actionnames::putBack}};
}

TEST_F(HelperServiceTest, Version_IsAPlainDecimalNumber) {
    bool isNumber = false;
    EXPECT_GT(QString::fromStdString(caller.ask(helpernames::getVersion)).toDouble(&isNumber), 0.0);
    EXPECT_TRUE(isNumber);
}

TEST_F(HelperServiceTest, LoadingDisableTurboBoost_SwitchesTurboOffUntilItIsUnloaded) {
    EXPECT_EQ(caller.load(),
              "DisableTurboBoost.64bits.kext 1.0: Turbo is off (intel_pstate/no_turbo)");
    EXPECT_EQ(attribute(noTurbo), "1");
    EXPECT_EQ(caller.unload(), "DisableTurboBoost.64bits.kext: Turbo is as it was found "
                               "(intel_pstate/no_turbo)");
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(HelperServiceTest, EveryCommand_AsksPolkitForItsActionAndTheSenderOfTheMessage) {
    for (const Command& each : allCommands()) {
        const qsizetype before = polkit.questions().size();
        [[maybe_unused]] const QDBusMessage reply = caller.call(each.method, each.arguments);
        ASSERT_EQ(polkit.questions().size(), before + 1) << each.method.data();
        const FakePolkit::Question question = polkit.questions().constLast();
        EXPECT_EQ(question.action, each.action) << each.method.data();
        EXPECT_EQ(question.subjectKind, QStringLiteral("system-bus-name"));
        EXPECT_EQ(question.subjectName, caller.busName());
        EXPECT_EQ(question.flags, 0U) << "nobody is to be asked for a password";
    }
}

TEST_F(HelperServiceTest, DeniedCaller_GetsAnErrorAndNothingIsTouched) {
    polkit.allowsAll = false;
    for (const Command& each : allCommands()) {
        EXPECT_EQ(caller.ask(each.method, each.arguments), accessDenied) << each.method.data();
    }
    EXPECT_EQ(attribute(noTurbo), "0");
    EXPECT_EQ(loadedList(), "");
}

TEST_F(HelperServiceTest, CallerWhoWouldHaveToAuthenticate_IsDenied) {
    polkit.allowsAll = false;
    polkit.challenges = true;
    EXPECT_EQ(caller.load(), accessDenied);
}

TEST_F(HelperServiceTest, DeniedCaller_CannotUndoWhatAnotherHasDone) {
    caller.load();
    polkit.allowsAll = false;
    EXPECT_EQ(other.unload(), accessDenied);
    EXPECT_EQ(attribute(noTurbo), "1");
}

TEST_F(HelperServiceTest, AnswerOfPolkitThatMakesNoSense_IsADenial) {
    const std::function<QDBusMessage(const QDBusMessage&)> answers[] = {
        [](const QDBusMessage& call) { return call.createReply(); },
        [](const QDBusMessage& call) { return call.createReply(true); },
        [](const QDBusMessage& call) { return call.createReply(QStringLiteral("yes")); },
        [](const QDBusMessage& call) {
            return call.createReply(QVariantList{true, true});
        },
        [](const QDBusMessage& call) {
            return call.createErrorReply(QDBusError::Failed, QStringLiteral("broken"));
        },
    };
    for (const auto& answer : answers) {
        polkit.nonsense = answer;
        EXPECT_EQ(caller.load(), accessDenied);
        EXPECT_EQ(attribute(noTurbo), "0");
    }
}

TEST_F(HelperServiceTest, PolkitThatIsNotThere_IsADenial) {
    polkit.service().giveNameUp();
    EXPECT_EQ(caller.load(), accessDenied);
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(HelperServiceTest, CallerWhoLeavesBeforePolkitAnswers_ChangesNothing) {
    polkit.service().hold();
    [[maybe_unused]] const auto call = caller.begin(
        helpernames::loadModuleNamed, {QStringLiteral("DisableTurboBoost.64bits.kext")});
    ASSERT_TRUE(waitUntil([this] { return !polkit.service().calls().isEmpty(); }));
    caller.leave();
    polkit.service().release();
    EXPECT_EQ(other.unload(), "DisableTurboBoost.64bits.kext: It was not loaded");
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(HelperServiceTest, CallerWhoLeavesTheBus_HoldsTurboNoLonger) {
    caller.load();
    EXPECT_EQ(attribute(noTurbo), "1");
    caller.leave();
    EXPECT_TRUE(turboBecomes("0"));
    EXPECT_TRUE(waitUntil([this] { return loadedList().isEmpty(); }));
}

TEST_F(HelperServiceTest, TwoCallers_TurboIsOffUntilTheLastGivesUp) {
    caller.load();
    other.load();
    EXPECT_EQ(caller.unload(), "DisableTurboBoost.64bits.kext: Another program has loaded it too");
    EXPECT_EQ(attribute(noTurbo), "1");
    other.leave();
    EXPECT_TRUE(turboBecomes("0"));
}

TEST_F(HelperServiceTest, SameCallerLoadingTwice_UnloadsOnce) {
    caller.load();
    caller.load();
    caller.unload();
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(HelperServiceTest, CallerWhoHasNotLoadedIt_DoesNotUnloadIt) {
    caller.load();
    other.unload();
    EXPECT_EQ(attribute(noTurbo), "1");
}

TEST_F(HelperServiceTest, OfAPath_OnlyTheNameOfAnOwnBundleCounts) {
    EXPECT_EQ(caller.load("../../../etc/shadow"), "The helper has no such extension");
    EXPECT_EQ(caller.load(""), "The helper has no such extension");
    EXPECT_EQ(caller.load("/tmp/evil/CPUTune.kext"),
              "CPUTune.kext 1.0: Loaded; it follows the run-time configuration");
}

TEST_F(HelperServiceTest, StatusText_HoldsNothingThatTheCallerHasSent) {
    const std::string status = caller.load("/tmp/\x1b[31mred/Unknown.kext");
    EXPECT_EQ(status.find("red"), std::string::npos);
    EXPECT_EQ(status.find("Unknown"), std::string::npos);
}

TEST_F(HelperServiceTest, OwnBundleThatOthersMayWrite_IsNotLoaded) {
    ASSERT_TRUE(QFile::setPermissions(
        place("helper/DisableTurboBoost.64bits.kext/Contents/Info.plist"),
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::WriteOther));
    EXPECT_NE(caller.load().find("not root's alone"), std::string::npos);
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(HelperServiceTest, WhatIsLoaded_StandsInTheList) {
    caller.load();
    caller.load("CPUTune.kext");
    EXPECT_EQ(loadedList(), "    1    0 0                  0          0          "
                            "com.TarnwickStudios.disableturboboost (1.0)\n"
                            "    2    0 0                  0          0          "
                            "com.TarnwickStudios.cputune (1.0)\n");
    caller.unload();
    EXPECT_EQ(loadedList(), "    1    0 0                  0          0          "
                            "com.TarnwickStudios.cputune (1.0)\n");
    caller.unload("CPUTune.kext");
    EXPECT_FALSE(QFile::exists(place("run/loaded")));
}

TEST_F(HelperServiceTest, MachineWithoutATurboSwitch_LoadsNothing) {
    QFile::remove(place("sys/") + QLatin1String(noTurbo));
    EXPECT_EQ(caller.load(), "Not loaded: this machine has no turbo switch");
    EXPECT_EQ(caller.load("CPUTune.kext"), "Not loaded: this machine has no turbo switch");
    EXPECT_EQ(loadedList(), "");
}

TEST_F(HelperServiceTest, TaskReport_IsInTheLayoutOfSections) {
    const QDBusMessage reply = caller.call(helpernames::getTaskPowerMetrics);
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage);
    const QStringList lines = reply.arguments().at(0).toStringList();
    ASSERT_GT(lines.size(), 5);
    EXPECT_TRUE(lines.at(0).startsWith(QLatin1String("***")));
    EXPECT_TRUE(lines.at(4).startsWith(QLatin1String("Name  ")));
    const QString own = QString::number(::getpid());
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&own](const QString& line) {
        return line.split(QLatin1Char(' '), Qt::SkipEmptyParts).contains(own);
    }));
}

TEST_F(HelperServiceTest, TwoWhoWantAReportAtOnce_GetTheSameOne) {
    QDBusPendingReply<QStringList> first = caller.begin(helpernames::getTaskPowerMetrics);
    QDBusPendingReply<QStringList> second = other.begin(helpernames::getTaskPowerMetrics);
    ASSERT_TRUE(waitUntil([&] { return first.isFinished() && second.isFinished(); }));
    EXPECT_EQ(first.value(), second.value());
}

TEST_F(HelperServiceTest, TooManyCommandsOfOneCaller_AreRefusedAndOthersAreServed) {
    polkit.service().hold();
    QList<QDBusPendingCall> calls;
    for (int call = 0; call < CallLimits::perCaller + 5; ++call) {
        calls.append(caller.begin(helpernames::getVersion));
    }
    ASSERT_TRUE(waitUntil([&] { return calls.last().isFinished(); }));
    for (int call = CallLimits::perCaller; call < calls.size(); ++call) {
        EXPECT_EQ(calls.at(call).reply().errorName(),
                  QStringLiteral("org.freedesktop.DBus.Error.LimitsExceeded"));
    }
    polkit.service().release();
    ASSERT_TRUE(waitUntil([&] { return calls.first().isFinished(); }));
    EXPECT_EQ(calls.first().reply().type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(other.ask(helpernames::getVersion), caller.ask(helpernames::getVersion));
}

TEST_F(HelperServiceTest, CommandsWithoutAReply_AreCarriedOutInSilence) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        helpernames::label, helpernames::path, helpernames::label, helpernames::loadModuleNamed);
    call.setArguments({QStringLiteral("DisableTurboBoost.64bits.kext")});
    ASSERT_TRUE(caller.connection().send(call));
    EXPECT_TRUE(turboBecomes("1"));
}

TEST_F(HelperServiceTest, WrongArguments_AreRefusedBeforeAnythingIsAsked) {
    const QVariantList wrong[] = {
        {},
        {1},
        {QStringLiteral("a"), QStringLiteral("b")},
        {QStringList{QStringLiteral("a")}},
        {QVariant::fromValue(QDBusVariant(QStringLiteral("a")))},
        {QVariantMap{{QStringLiteral("a"), 1}}},
        {QVariant::fromValue(QDBusUnixFileDescriptor(0))},
    };
    for (const QVariantList& arguments : wrong) {
        EXPECT_EQ(caller.ask(helpernames::loadModuleNamed, arguments),
                  "org.freedesktop.DBus.Error.InvalidArgs");
    }
    EXPECT_EQ(caller.ask(helpernames::getVersion, {QStringLiteral("a")}),
              "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_TRUE(polkit.questions().isEmpty());
}

TEST_F(HelperServiceTest, End_PutsEverythingBack) {
    caller.load();
    helper->putEverythingBack();
    EXPECT_EQ(attribute(noTurbo), "0");
    EXPECT_EQ(loadedList(), "");
}

TEST_F(HelperServiceTest, CrashWithTurboOff_IsPutBackByTheNextStart) {
    caller.load();
    loseHelper();
    EXPECT_EQ(attribute(noTurbo), "1");
    // Its entry counts once its process is dead, which this one is not.
    QFile journal(place("run/putting-back.journal"));
    ASSERT_TRUE(journal.open(QIODevice::ReadOnly));
    const QByteArray entry =
        journal.readAll().replace("\"pid\":" + QByteArray::number(::getpid()), "\"pid\":1");
    putFile(journal.fileName(), entry);
    start();
    EXPECT_EQ(attribute(noTurbo), "0");
    EXPECT_EQ(loadedList(), "");
    EXPECT_EQ(caller.load(),
              "DisableTurboBoost.64bits.kext 1.0: Turbo is off (intel_pstate/no_turbo)");
}

// The run-time configuration.

class CpuTuneTest : public HelperServiceTest {
  protected:
    void say(const QByteArray& text) const {
        const QString path = options.paths.runTimeConfiguration;
        putFile(path + QStringLiteral(".new"), text);
        ASSERT_EQ(::rename(QFile::encodeName(path + QStringLiteral(".new")).constData(),
                           QFile::encodeName(path).constData()),
                  0);
    }
};

TEST_F(CpuTuneTest, Loaded_FollowsWhatTheFileSays) {
    caller.load("CPUTune.kext");
    EXPECT_EQ(attribute(noTurbo), "0");
    say("0");
    EXPECT_TRUE(turboBecomes("1"));
    say("1");
    EXPECT_TRUE(turboBecomes("0"));
    say("0");
    EXPECT_TRUE(turboBecomes("1"));
    caller.unload("CPUTune.kext");
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(CpuTuneTest, FileThatIsThereAlready_CountsAtOnce) {
    say("0");
    caller.load("CPUTune.kext");
    EXPECT_TRUE(turboBecomes("1"));
}

TEST_F(CpuTuneTest, NotLoaded_TheFileMeansNothing) {
    say("0");
    EXPECT_EQ(caller.ask(helpernames::getVersion), other.ask(helpernames::getVersion));
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(CpuTuneTest, FileThatIsTakenAway_PutsTurboBack) {
    caller.load("CPUTune.kext");
    say("0");
    ASSERT_TRUE(turboBecomes("1"));
    QFile::remove(options.paths.runTimeConfiguration);
    EXPECT_TRUE(turboBecomes("0"));
}

TEST_F(CpuTuneTest, LinkInItsPlace_PutsTurboBackAndIsNotFollowed) {
    caller.load("CPUTune.kext");
    say("0");
    ASSERT_TRUE(turboBecomes("1"));
    putFile(place("tmp/target"), "0");
    QFile::remove(options.paths.runTimeConfiguration);
    ASSERT_TRUE(QFile::link(place("tmp/target"), options.paths.runTimeConfiguration));
    EXPECT_TRUE(turboBecomes("0"));
    QFile::remove(options.paths.runTimeConfiguration);
    say("0");
    EXPECT_TRUE(turboBecomes("1"));
}

TEST_F(CpuTuneTest, CallerWhoLeaves_UnloadsIt) {
    caller.load("CPUTune.kext");
    say("0");
    ASSERT_TRUE(turboBecomes("1"));
    caller.leave();
    EXPECT_TRUE(turboBecomes("0"));
}

TEST_F(CpuTuneTest, BothExtensions_TurboIsOffWhileOneWantsIt) {
    caller.load("CPUTune.kext");
    caller.load();
    say("0");
    say("1");
    EXPECT_EQ(attribute(noTurbo), "1");
    caller.unload();
    EXPECT_TRUE(turboBecomes("0"));
}

// How it leaves.

class HelperLifeTest : public RootHelperFixture {
  protected:
    void SetUp() override {
        RootHelperFixture::SetUp();
        options.idleLimit = std::chrono::milliseconds(200);
        start();
        QObject::connect(helper.get(), &Helper::left, [this] { hasLeft = true; });
    }

    bool hasLeft = false;
    HelperCaller caller{bus, QStringLiteral("caller")};
};

TEST_F(HelperLifeTest, NothingAskedForAWhile_LeavesTheBus) {
    EXPECT_TRUE(waitUntil([this] { return hasLeft; }));
    EXPECT_FALSE(bus.hasOwner(helpernames::label));
}

TEST_F(HelperLifeTest, SomethingLoaded_Stays) {
    caller.load();
    EXPECT_FALSE(waitUntil([this] { return hasLeft; }, std::chrono::seconds(1)));
    caller.unload();
    EXPECT_TRUE(waitUntil([this] { return hasLeft; }));
}

TEST_F(HelperLifeTest, HolderWhoLeavesTheBus_LetsItLeaveToo) {
    caller.load();
    caller.leave();
    EXPECT_TRUE(waitUntil([this] { return hasLeft; }));
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(HelperLifeTest, CommandThatIsUnderWay_IsAnsweredFirst) {
    polkit.service().hold();
    QDBusPendingCall call = caller.begin(helpernames::getVersion);
    EXPECT_FALSE(waitUntil([this] { return hasLeft; }, std::chrono::seconds(1)));
    polkit.service().release();
    ASSERT_TRUE(waitUntil([&] { return call.isFinished(); }));
    EXPECT_FALSE(call.isError());
}

TEST_F(HelperLifeTest, CommandThatComesAsItLeaves_IsToBeSentAgain) {
    const QString helperName = QDBusConnection(QStringLiteral("helper")).baseService();
    ASSERT_TRUE(waitUntil([this] { return hasLeft; }));
    QDBusMessage late = QDBusMessage::createMethodCall(
        helperName, helpernames::path, helpernames::label, helpernames::loadModuleNamed);
    late.setArguments({QStringLiteral("DisableTurboBoost.64bits.kext")});
    QDBusPendingCall call = caller.connection().asyncCall(late);
    ASSERT_TRUE(waitUntil([&] { return call.isFinished(); }));
    EXPECT_EQ(call.reply().errorName(), helpernames::leavingError);
    EXPECT_EQ(attribute(noTurbo), "0");
}

TEST_F(HelperLifeTest, BusThatGoesAway_EndsIt) {
    caller.load();
    bus.stop();
    EXPECT_TRUE(waitUntil([this] { return hasLeft; }));
}

TEST_F(HelperLifeTest, NameThatSomebodyElseHas_IsSaidAndNothingIsServed) {
    Helper second(bus.connection(QStringLiteral("second")), options, log);
    EXPECT_FALSE(second.serve());
    EXPECT_TRUE(log.contains("cannot be had"));
    QDBusConnection::disconnectFromBus(QStringLiteral("second"));
}

TEST(RuntimeFolderTest, FolderThatOthersMayWrite_IsRefused) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("run"));
    EXPECT_EQ(prepareRuntimeFolder(path), std::nullopt);
    EXPECT_EQ(prepareRuntimeFolder(path), std::nullopt);
    ASSERT_TRUE(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                QFileDevice::ExeOwner | QFileDevice::WriteOther));
    EXPECT_NE(prepareRuntimeFolder(path), std::nullopt);
}

TEST(RuntimeFolderTest, LinkInItsPlace_IsRefused) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("run"));
    ASSERT_TRUE(QFile::link(folder.path(), path));
    EXPECT_NE(prepareRuntimeFolder(path), std::nullopt);
    EXPECT_NE(prepareRuntimeFolder(QStringLiteral("/no/such/folder/run")), std::nullopt);
}

} // namespace
} // namespace quorvane::test
