#include "helperclient/HelperTool.h"

#include "helperclient/Common.h"
#include "mode/BatterySaver.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <atomic>
#include <thread>

namespace quorvane::test {

namespace {

const QString metricsRight = QStringLiteral("com.TarnwickStudios.quorvane..startWebService");

class HelperToolTest : public SimulatedLaptopTest {
  protected:
    static HelperTool& tool() { return HelperTool::helperTool(); }

    SimulatedHelper& helper() { return laptop().helperInstaller(); }

    void bundle(const char* version) {
        laptop().bundle().setResource(
            QStringLiteral("TurboHelper-info.plist"),
            QByteArray("<plist version=\"1.0\"><dict><key>CFBundleVersion</key><string>") +
                version + "</string></dict></plist>");
        helper().setBundledVersion(QString::fromLatin1(version));
    }

    void installed(const char* version) {
        helper().setInstalled(true);
        helper().setVersion(QString::fromLatin1(version));
    }

    [[nodiscard]] qsizetype calls(const char* call) {
        return helper().calls().count(QString::fromLatin1(call));
    }

    [[nodiscard]] bool logs(const char* line) {
        return comesTrue([&] { return laptop().logSink().count(QString::fromLatin1(line)) == 1; });
    }
};

using HelperToolDeathTest = HelperToolTest;

class CommonTest : public SimulatedLaptopTest {};

using CommonDeathTest = CommonTest;

} // namespace

TEST_F(HelperToolTest, FirstSwitchIntoTheModeWithoutHelper_InstallsOnceAndAsksNoVersion) {
    bundle("12");
    start();
    BatterySaver::batterySaver().setEnabled(true);
    EXPECT_EQ(helper().calls().value(0), QStringLiteral("install"));
    EXPECT_EQ(calls("install"), 1);
    EXPECT_EQ(calls("version"), 0);
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Success installing helper")), 1);
}

TEST_F(HelperToolTest, SameVersion_LogsTheCheckAndAsksTheHelperOnlyOnce) {
    bundle("12");
    installed("12");
    tool().installLatestVersion();
    EXPECT_EQ(logLines(), QStringList{QStringLiteral(
                              "Checked helper tool version: (Available: 12, Running: 12)")});
    tool().installLatestVersion();
    EXPECT_EQ(calls("version"), 1);
    EXPECT_EQ(calls("install") + calls("remove"), 0);
}

TEST_F(HelperToolTest, NewerVersionAvailable_ReplacesTheHelperAndAsksAnew) {
    bundle("13");
    installed("12");
    tool().installLatestVersion();
    EXPECT_EQ(calls("remove"), 1);
    EXPECT_EQ(calls("install"), 1);
    EXPECT_LT(helper().calls().indexOf(QStringLiteral("remove")),
              helper().calls().indexOf(QStringLiteral("install")));
    EXPECT_TRUE(logs("Connection invalidated"));
    EXPECT_FALSE(tool().isConnected());
    EXPECT_EQ(tool().versionNumber(), 13.0);
    EXPECT_EQ(calls("version"), 2);
}

TEST_F(HelperToolTest, ReplacementThatWaitsForAnAdministrator_IsLoggedWhenItIsDone) {
    bundle("13");
    installed("12");
    helper().holdPrompts();
    tool().installLatestVersion();
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Success removed helper")), 0);
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Success installing helper")), 0);
    helper().answerPrompts();
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Success removed helper")), 1);
    EXPECT_EQ(laptop().logSink().count(QStringLiteral("Success installing helper")), 1);
    EXPECT_LT(logLines().indexOf(QStringLiteral("Success removed helper")),
              logLines().indexOf(QStringLiteral("Success installing helper")));
    EXPECT_EQ(tool().versionNumber(), 13.0);
}

TEST_F(HelperToolTest, HelperThatDoesNotAnswer_HasNoVersionAfterFiveSecondsAndIsReinstalled) {
    bundle("1");
    installed("7");
    helper().setState(SimulatedHelper::State::Silent);
    const Seconds before = laptop().clock().monotonic();
    EXPECT_EQ(tool().versionNumber(), std::nullopt);
    EXPECT_EQ(laptop().clock().monotonic() - before, Seconds(5));
    tool().installLatestVersion();
    EXPECT_TRUE(comesTrue([this] { return calls("version") == 2; }));
    EXPECT_EQ(calls("install"), 1);
    EXPECT_EQ(laptop().logSink().count(
                  QStringLiteral("Checked helper tool version: (Available: 1, Running: (null))")),
              1);
}

TEST_F(HelperToolTest, HelperThatDoesNotAnswerAndNoVersionAvailable_IsLeftAlone) {
    installed("7");
    helper().setState(SimulatedHelper::State::Silent);
    tool().installLatestVersion();
    EXPECT_EQ(calls("install") + calls("remove"), 0);
}

TEST_F(HelperToolTest, VersionOfAnUnreachableHelper_LogsTheProxyError) {
    helper().setState(SimulatedHelper::State::Gone);
    EXPECT_EQ(tool().versionNumber(), std::nullopt);
    EXPECT_TRUE(logs("get version number proxy error the helper cannot be reached"));
}

TEST_F(HelperToolTest, VersionWithTwoDots_DoesNotParse) {
    installed("1.2.3");
    EXPECT_EQ(tool().versionNumber(), std::nullopt);
}

TEST_F(HelperToolTest, Versions_AreComparedAsFloats) {
    bundle("1.10");
    installed("1.9");
    tool().installLatestVersion();
    EXPECT_EQ(calls("install"), 0);
    EXPECT_EQ(logLines().last(),
              QStringLiteral("Checked helper tool version: (Available: 1.1, Running: 1.9)"));
}

TEST_F(HelperToolTest, CommandWhileTheHelperIsGone_LogsOneLineAndTheNextCommandReconnects) {
    helper().setState(SimulatedHelper::State::Gone);
    std::atomic<bool> replied = false;
    tool().safeExecuteBlock([&replied](HelperToolProtocol& proxy) {
        proxy.loadModuleNamed(QStringLiteral("/x.kext"),
                              [&replied](const auto&) { replied = true; });
    });
    EXPECT_TRUE(logs("Execute block error: the helper cannot be reached"));
    EXPECT_FALSE(replied);
    EXPECT_EQ(calls("connect"), 1);

    helper().invalidateConnections();
    EXPECT_TRUE(logs("Connection invalidated"));
    EXPECT_FALSE(tool().isConnected());

    helper().setState(SimulatedHelper::State::Answers);
    tool().safeExecuteBlock([&replied](HelperToolProtocol& proxy) {
        proxy.loadModuleNamed(QStringLiteral("/x.kext"),
                              [&replied](const auto&) { replied = true; });
    });
    EXPECT_TRUE(comesTrue([&replied] { return replied.load(); }));
    EXPECT_EQ(calls("connect"), 2);
}

TEST_F(HelperToolTest, OpenConnection_IsReused) {
    for (int i = 0; i < 3; ++i) {
        tool().safeExecuteBlock(
            [](HelperToolProtocol& proxy) { proxy.enableLowPowerMode([](const QString&) {}); });
    }
    EXPECT_EQ(calls("connect"), 1);
}

TEST_F(HelperToolTest, CommandBlock_RunsAtOnceWithoutError) {
    bool ran = false;
    tool().connectAndExecuteCommandBlock(
        [&ran](const std::optional<QString>& error) { ran = !error.has_value(); });
    EXPECT_TRUE(ran);
    EXPECT_TRUE(tool().isConnected());
}

TEST_F(HelperToolTest, FailedInstallation_IsSilent) {
    helper().failInstalling(QStringLiteral("denied"));
    tool().installAction();
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(HelperToolTest, Removal_IsLoggedEitherWay) {
    installed("1");
    EXPECT_TRUE(tool().uninstall());
    EXPECT_EQ(logLines().last(), QStringLiteral("Success removed helper"));
    helper().failRemoving(QStringLiteral("busy"));
    EXPECT_TRUE(tool().uninstall());
    EXPECT_EQ(logLines().last(), QStringLiteral("error removing helper busy"));
}

TEST_F(HelperToolTest, BundleVersion_IsNothingWhenResourceKeyOrNumberIsMissing) {
    EXPECT_EQ(tool().getBundleHelperVersion(), std::nullopt);
    const QString file = QStringLiteral("TurboHelper-info.plist");
    laptop().bundle().setResource(file, "<plist version=\"1.0\"><dict/></plist>");
    EXPECT_EQ(tool().getBundleHelperVersion(), std::nullopt);
    laptop().bundle().setResource(file, "no list");
    EXPECT_EQ(tool().getBundleHelperVersion(), std::nullopt);
    bundle("twelve");
    EXPECT_EQ(tool().getBundleHelperVersion(), std::nullopt);
    bundle("1.5");
    EXPECT_EQ(tool().getBundleHelperVersion(), 1.5);
}

TEST_F(HelperToolTest, Authorization_IsThirtyTwoBytesAndTheRightsAreRegistered) {
    EXPECT_EQ(tool().authorization().size(), 32);
    EXPECT_EQ(laptop().authorization().rules(),
              (QMap<QString, QString>{{metricsRight, QStringLiteral("allow")}}));
}

TEST_F(HelperToolTest, LateVersionReply_AfterTheToolIsGone_IsHarmless) {
    installed("12");
    helper().setState(SimulatedHelper::State::Silent);
    EXPECT_EQ(tool().versionNumber(), std::nullopt);
    SharedInstances::reset(std::make_unique<SimulatedPlatform>());
}

TEST_F(HelperToolDeathTest, AuthorizationThatCannotBeCreated_StopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    laptop().authorization().failCreating();
    EXPECT_DEATH(tool(), "err == errAuthorizationSuccess");
}

TEST_F(HelperToolDeathTest, ExternalFormThatCannotBeMade_StopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    laptop().authorization().failExternalForm();
    EXPECT_DEATH(tool(), "err == errAuthorizationSuccess");
}

TEST_F(HelperToolDeathTest, ConnectingOffTheMainThread_StopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    HelperTool& shared = tool();
    EXPECT_DEATH(std::thread([&shared] { shared.connectToHelperTool(); }).join(),
                 "\\[NSThread isMainThread\\]");
}

TEST_F(CommonTest, RightThatExistsWithAnotherRule_IsNotChanged) {
    laptop().authorization().setRule(metricsRight, QStringLiteral("authenticate-admin"));
    HelperTool::helperTool();
    EXPECT_EQ(laptop().authorization().rules().value(metricsRight),
              QStringLiteral("authenticate-admin"));
}

TEST_F(CommonTest, RightForCommand_IsTheTablesOrNothing) {
    EXPECT_EQ(Common::authorizationRightForCommand(QStringLiteral("getTaskPowerMetricsWithReply:")),
              metricsRight);
    EXPECT_EQ(Common::authorizationRightForCommand(QStringLiteral("getVersionWithReply:")),
              std::nullopt);
}

TEST_F(CommonTest, Enumeration_GivesNameRuleAndDescription) {
    QStringList rights;
    Common::enumerateRightsUsingBlock(
        [&rights](const QString& name, const QString& rule, const QString& description) {
            rights.append(QStringList{name, rule, description}.join(QLatin1Char('|')));
        });
    EXPECT_EQ(rights,
              QStringList{metricsRight +
                          QStringLiteral("|allow|BKTV is trying to start its web service.")});
}

TEST_F(CommonDeathTest, MalformedEntries_StopTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto ignore = [](const QString&, const QString&, const QString&) {};
    QVariantMap right{{QStringLiteral("authRightName"), QStringLiteral("n")},
                      {QStringLiteral("authRightDefault"), QStringLiteral("allow")},
                      {QStringLiteral("authRightDescription"), QStringLiteral("d")}};
    const auto tableOf = [](const QVariant& entry) {
        return QVariantMap{{QStringLiteral("command"), entry}};
    };
    EXPECT_DEATH(Common::enumerateRights(tableOf(1), ignore),
                 "\\[commandDict isKindOfClass:\\[NSDictionary class\\]\\]");
    QVariantMap broken = right;
    broken[QStringLiteral("authRightName")] = 1;
    EXPECT_DEATH(Common::enumerateRights(tableOf(broken), ignore),
                 "\\[authRightName isKindOfClass:\\[NSString class\\]\\]");
    broken = right;
    broken.remove(QStringLiteral("authRightDefault"));
    EXPECT_DEATH(Common::enumerateRights(tableOf(broken), ignore), "authRightDefault != nil");
    broken = right;
    broken.remove(QStringLiteral("authRightDescription"));
    EXPECT_DEATH(Common::enumerateRights(tableOf(broken), ignore),
                 "\\[authRightDesc isKindOfClass:\\[NSString class\\]\\]");
}

TEST_F(CommonDeathTest, NoReferenceOrAStoreThatRefuses_StopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(Common::setupAuthorizationRights(nullptr), "authRef != NULL");
    laptop().authorization().failSetting();
    EXPECT_DEATH(HelperTool::helperTool(), "blockErr == errAuthorizationSuccess");
}

} // namespace quorvane::test
