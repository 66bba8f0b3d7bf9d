#include "platform/linux/session/LinuxOpener.h"

#include "tests/support/QtPrinters.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <gmock/gmock.h>

#include <csignal>
#include <unistd.h>

namespace quorvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// With an xdg-open of the test's own, which writes down what it was told and how it runs.
class LinuxOpenerTest : public testing::Test {
  protected:
    void SetUp() override {
        QFile script(folder_.filePath(QStringLiteral("xdg-open")));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        // No shell: that lets all signals through by itself.
        script.write(
            "#!/usr/bin/awk -f\n"
            "BEGIN {\n"
            "  opened = ENVIRON[\"QUORVANE_OPENED\"]\n"
            "  getline stat < \"/proc/self/stat\"\n"
            "  split(stat, fields, \" \")\n"
            "  while ((getline line < \"/proc/self/status\") > 0)\n"
            "    if (line ~ /^SigBlk/) held = line\n"
            "  printf \"%d\\n%s\\n%s\\n%s\\nend\\n\", ARGC - 1, ARGV[1], fields[6], held > opened\n"
            "}\n");
        script.close();
        script.setPermissions(script.permissions() | QFile::ExeOwner);
        qputenv("PATH", QFile::encodeName(folder_.path()) + ':' + path_);
        qputenv("QUORVANE_OPENED", QFile::encodeName(opened()));
    }

    void TearDown() override {
        qputenv("PATH", path_);
        qunsetenv("QUORVANE_OPENED");
    }

    [[nodiscard]] QString opened() const { return folder_.filePath(QStringLiteral("opened")); }

    /// How many arguments there were, the first one, the session, the signals that are held.
    [[nodiscard]] QList<QByteArray> told() const {
        QByteArray text;
        EXPECT_TRUE(waitUntil([this, &text] {
            QFile file(opened());
            text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return text.endsWith("end\n");
        }));
        return text.split('\n');
    }

    const QByteArray path_ = qgetenv("PATH");
    QTemporaryDir folder_;
    RecordingLog log_;
    LinuxOpener opener_{log_};
};

TEST_F(LinuxOpenerTest, Address_IsOneArgumentOfTheUsersOpener) {
    opener_.openURL(QUrl(QStringLiteral("https://example.org/a b?contact=1&x=$(id)")));
    const QList<QByteArray> lines = told();
    EXPECT_EQ(lines.value(0), "1");
    EXPECT_EQ(lines.value(1), "https://example.org/a%20b?contact=1&x=$(id)");
    EXPECT_THAT(log_.lines(), IsEmpty());
}

// A browser that it starts is neither to end with this program nor to be deaf to what ends it.
TEST_F(LinuxOpenerTest, Opener_HasASessionAndSignalsOfItsOwn) {
    sigset_t held{};
    sigset_t before{};
    sigemptyset(&held);
    sigaddset(&held, SIGTERM);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &held, &before), 0);
    opener_.openURL(QUrl(QStringLiteral("https://example.org/")));
    const QList<QByteArray> lines = told();
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_NE(lines.value(2), QByteArray::number(::getsid(0)));
    EXPECT_EQ(lines.value(3), "SigBlk:\t0000000000000000");
}

TEST_F(LinuxOpenerTest, WhatIsNoAddress_IsLoggedAndNotOpened) {
    opener_.openURL(QUrl(QStringLiteral("somewhere")));
    opener_.openURL(QUrl());
    EXPECT_THAT(
        log_.lines(),
        ElementsAre(QStringLiteral("The page \"somewhere\" cannot be opened: it is no address"),
                    QStringLiteral("The page \"\" cannot be opened: it is no address")));
    opener_.openURL(QUrl(QStringLiteral("https://example.org/last")));
    EXPECT_EQ(told().value(1), "https://example.org/last");
}

TEST_F(LinuxOpenerTest, NothingThatOpens_IsLogged) {
    qputenv("PATH", "/no/such/folder");
    opener_.openURL(QUrl(QStringLiteral("https://example.org/")));
    ASSERT_TRUE(waitUntil([this] { return !log_.lines().isEmpty(); }));
    EXPECT_TRUE(log_.lines().constFirst().startsWith(
        QLatin1String("The page \"https://example.org/\" cannot be opened: ")));
}

} // namespace
} // namespace quorvane::test
