#include "helper/SystemCommands.h"

#include "tests/support/QtPrinters.h"
#include "tests/unit/SimulatedLaptopTest.h"

namespace quorvane::test {

namespace {

const QString chown = QStringLiteral("/usr/sbin/chown");
const QString kextutil = QStringLiteral("/usr/bin/kextutil");
const QString kextunload = QStringLiteral("/sbin/kextunload");
const QString path = QStringLiteral("/opt/My Apps/CPU Tune.kext");

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
    EXPECT_TRUE(SystemCommands::runTaskAsAdmin(kextutil, authRef, {}));
    EXPECT_EQ(executed(), QList<QStringList>{QStringList{kextutil}});
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(SystemCommandsTest, PathWithSpaces_IsOneArgument) {
    EXPECT_TRUE(SystemCommands::runTaskAsAdmin(kextutil, authRef, {QStringLiteral("-v"), path}));
    EXPECT_EQ(executed().constFirst(), (QStringList{kextutil, QStringLiteral("-v"), path}));
}

TEST_F(SystemCommandsTest, Pipe_HasNoEffect) {
    SystemCommands::Pipe pipe = &authRef;
    EXPECT_TRUE(SystemCommands::runTaskAsAdmin(kextutil, authRef, {}, &pipe));
    EXPECT_EQ(pipe, &authRef);
    EXPECT_TRUE(SystemCommands::runTaskAsAdmin(kextutil, authRef, {}, nullptr));
    EXPECT_EQ(executed().size(), 2);
}

TEST_F(SystemCommandsTest, ToolThatCannotBeStarted_IsLoggedWithItsStatus) {
    fail(kextutil, -60031);
    EXPECT_FALSE(SystemCommands::runTaskAsAdmin(kextutil, authRef, {}));
    EXPECT_EQ(logLines(), QStringList{QStringLiteral("Error: -60031")});
}

TEST_F(SystemCommandsTest, Loading_GivesTheBundleToRootAndLoadsIt) {
    EXPECT_TRUE(SystemCommands::loadModuleWithPath(path, authRef));
    EXPECT_EQ(executed(),
              (QList<QStringList>{{chown, QStringLiteral("-R"), QStringLiteral("root:wheel"), path},
                                  {kextutil, QStringLiteral("-v"), path}}));
}

TEST_F(SystemCommandsTest, LoadingWithAFailedOwnershipChange_StillLoads) {
    fail(chown, -60005);
    EXPECT_FALSE(SystemCommands::loadModuleWithPath(path, authRef));
    EXPECT_EQ(executed().size(), 2);
    EXPECT_EQ(logLines(), QStringList{QStringLiteral("Error: -60005")});
}

TEST_F(SystemCommandsTest, LoadingThatCannotBeStarted_IsNoSuccess) {
    fail(kextutil, -60031);
    EXPECT_FALSE(SystemCommands::loadModuleWithPath(path, authRef));
}

TEST_F(SystemCommandsTest, LoadingWithNeitherToolStarted_LogsTwiceAndIsNoSuccess) {
    fail(chown, -60031);
    fail(kextutil, -60031);
    EXPECT_FALSE(SystemCommands::loadModuleWithPath(path, authRef));
    EXPECT_EQ(logLines(),
              (QStringList{QStringLiteral("Error: -60031"), QStringLiteral("Error: -60031")}));
}

TEST_F(SystemCommandsTest, Unloading_IsAlwaysASuccess) {
    EXPECT_TRUE(SystemCommands::unloadModuleWithPath(path, authRef));
    EXPECT_EQ(executed(), (QList<QStringList>{{kextunload, QStringLiteral("-v"), path}}));
    fail(kextunload, -60031);
    EXPECT_TRUE(SystemCommands::unloadModuleWithPath(path, authRef));
    EXPECT_EQ(logLines(), QStringList{QStringLiteral("Error: -60031")});
}

} // namespace quorvane::test
