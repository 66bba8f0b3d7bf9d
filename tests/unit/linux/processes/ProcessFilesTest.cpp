#include "platform/linux/processes/ProcessFiles.h"

#include "tests/unit/linux/processes/FakeProc.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace quorvane::test {
namespace {

TEST(ProcessFilesTest, Program_IsWhereItWasAlsoAfterAnUpdate) {
    const FakeProc proc;
    proc.add({.pid = 50, .executable = "/opt/x/browser (deleted)"});
    proc.add({.pid = 60, .executable = "/opt/x/browser"});
    proc.add({.pid = 70, .executable = nullptr});
    EXPECT_EQ(ProcessFiles(50, proc.path()).program(), QStringLiteral("/opt/x/browser"));
    EXPECT_EQ(ProcessFiles(60, proc.path()).program(), QStringLiteral("/opt/x/browser"));
    EXPECT_EQ(ProcessFiles(70, proc.path()).program(), QString());
}

TEST(ProcessFilesTest, ThisProcess_TellsEverything) {
    const ProcessFiles self(::getpid());
    EXPECT_TRUE(self.exist());
    EXPECT_TRUE(self.program().startsWith(QLatin1Char('/')));
    EXPECT_TRUE(self.status().startsWith("Name:"));
    EXPECT_TRUE(self.controlGroups().contains("0::") || self.controlGroups().contains(":name="));
    EXPECT_TRUE(self.commandLine().endsWith('\0'));
}

TEST(ProcessFilesTest, NoSuchProcess_TellsNothing) {
    const ProcessFiles nobody(99, FakeProc().path());
    EXPECT_FALSE(nobody.exist());
    EXPECT_EQ(nobody.program(), QString());
    EXPECT_EQ(nobody.commandLine(), QByteArray());
    EXPECT_EQ(nobody.controlGroups(), QByteArray());
    EXPECT_EQ(nobody.status(), QByteArray());
}

} // namespace
} // namespace quorvane::test
