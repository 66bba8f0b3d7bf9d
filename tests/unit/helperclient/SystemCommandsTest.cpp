#include "helperclient/SystemCommands.h"

#include "tests/support/QtPrinters.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

namespace quorvane::test {

namespace {

const QString chownTool = QStringLiteral("/usr/sbin/chown");
const QString kextutilTool = QStringLiteral("/usr/bin/kextutil");
const QString kextunloadTool = QStringLiteral("/sbin/kextunload");
const QString bundlePath = QStringLiteral("/opt/My Apps/CPU Tune.kext");

class SystemCommandsTest : public SimulatedLaptopTest {
  protected:
    const QList<QStringList>& executed() { return laptop().authorization().executed(); }

    void fail(const QString& tool, int status) {
        laptop().authorization().failExecuting(tool, status);
    }

    AuthorizationRef authRef;
};

} // namespace

TEST_F(SystemCommandsTest, NoArguments_StartsTheToolAlone) {
    EXPECT_TRUE(SystemCommands::runTaskAsAdmin(kextutilTool, authRef, {}));
    EXPECT_EQ(executed(), QList<QStringList>{QStringList{kextutilTool}});
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(SystemCommandsTest, PathWithSpaces_IsOneArgument) {
    EXPECT_TRUE(
        SystemCommands::runTaskAsAdmin(kextutilTool, authRef, {QStringLiteral("-v"), bundlePath}));
    EXPECT_EQ(executed().constFirst(),
              (QStringList{kextutilTool, QStringLiteral("-v"), bundlePath}));
}

TEST_F(SystemCommandsTest, Pipe_HasNoEffect) {
    SystemCommands::Pipe pipe = &authRef;
    EXPECT_TRUE(SystemCommands::runTaskAsAdmin(kextutilTool, authRef, {}, &pipe));
    EXPECT_EQ(pipe, &authRef);
    EXPECT_TRUE(SystemCommands::runTaskAsAdmin(kextutilTool, authRef, {}, nullptr));
    EXPECT_EQ(executed().size(), 2);
}

TEST_F(SystemCommandsTest, ToolThatCannotBeStarted_IsLoggedWithItsStatus) {
    fail(kextutilTool, -60031);
    EXPECT_FALSE(SystemCommands::runTaskAsAdmin(kextutilTool, authRef, {}));
    EXPECT_EQ(logLines(), QStringList{QStringLiteral("Error: -60031")});
}

TEST_F(SystemCommandsTest, Loading_GivesTheBundleToRootAndLoadsIt) {
    EXPECT_TRUE(SystemCommands::loadModuleWithPath(bundlePath, authRef));
    EXPECT_EQ(executed(), (QList<QStringList>{{chownTool, QStringLiteral("-R"),
                                               QStringLiteral("root:wheel"), bundlePath},
                                              {kextutilTool, QStringLiteral("-v"), bundlePath}}));
}

TEST_F(SystemCommandsTest, LoadingWithAFailedOwnershipChange_StillLoads) {
    fail(chownTool, -60005);
    EXPECT_FALSE(SystemCommands::loadModuleWithPath(bundlePath, authRef));
    EXPECT_EQ(executed().size(), 2);
    EXPECT_EQ(logLines(), QStringList{QStringLiteral("Error: -60005")});
}

TEST_F(SystemCommandsTest, LoadingThatCannotBeStarted_IsNoSuccess) {
    fail(kextutilTool, -60031);
    EXPECT_FALSE(SystemCommands::loadModuleWithPath(bundlePath, authRef));
}

TEST_F(SystemCommandsTest, LoadingWithNeitherToolStarted_LogsTwiceAndIsNoSuccess) {
    fail(chownTool, -60031);
    fail(kextutilTool, -60031);
    EXPECT_FALSE(SystemCommands::loadModuleWithPath(bundlePath, authRef));
    EXPECT_EQ(logLines(),
              (QStringList{QStringLiteral("Error: -60031"), QStringLiteral("Error: -60031")}));
}

TEST_F(SystemCommandsTest, Unloading_IsAlwaysASuccess) {
    EXPECT_TRUE(SystemCommands::unloadModuleWithPath(bundlePath, authRef));
    EXPECT_EQ(executed(), (QList<QStringList>{{kextunloadTool, QStringLiteral("-v"), bundlePath}}));
    fail(kextunloadTool, -60031);
    EXPECT_TRUE(SystemCommands::unloadModuleWithPath(bundlePath, authRef));
    EXPECT_EQ(logLines(), QStringList{QStringLiteral("Error: -60031")});
}

} // namespace quorvane::test
