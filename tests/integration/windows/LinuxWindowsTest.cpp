#include "platform/linux/windows/LinuxWindows.h"

#include "tests/support/QtPrinters.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <optional>

namespace quorvane::test {
namespace {

/// The port over a program of the test's own in the place of the one with the windows.
class LinuxWindowsTest : public testing::Test {
  protected:
    LinuxWindowsTest() {
        QDir().mkpath(contents() + QStringLiteral("/Linux"));
        QDir().mkpath(contents() + QStringLiteral("/Resources"));
        put(contents() + QStringLiteral("/Resources/Splash.ui"), "<ui/>");
        windows = std::make_unique<LinuxWindows>(contents(), log);
    }

    [[nodiscard]] QString contents() const { return folder.filePath(QStringLiteral("Contents")); }

    [[nodiscard]] QString file(const char* name) const {
        return folder.filePath(QLatin1String(name));
    }

    static void put(const QString& path, const QByteArray& text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    [[nodiscard]] QByteArray read(const char* name) const {
        QFile stream(file(name));
        return stream.open(QIODevice::ReadOnly) ? stream.readAll() : QByteArray();
    }

    /// What the program does; its working folder is the test's.
    void program(const QByteArray& script) const {
        const QString path = contents() + QStringLiteral("/Linux/quorvane-window");
        put(path, "#!/bin/sh\ncd '" + QFile::encodeName(folder.path()) + "'\n" + script + '\n');
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    /// The button that counts, of "Yes" and "No", of which the latter is safe.
    int ask() {
        std::optional<int> answer;
        windows->runModal({QStringLiteral("Really?"),
                           QStringLiteral("It \"cannot\" be undone.\n<b>"),
                           {QStringLiteral("Yes"), QStringLiteral("No")},
                           1},
                          [&](int button) { answer = button; });
        EXPECT_FALSE(answer) << "answered before it returned";
        EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }));
        return answer.value_or(-1);
    }

    QTemporaryDir folder;
    RecordingLog log;
    std::unique_ptr<LinuxWindows> windows;
};

TEST_F(LinuxWindowsTest, Alert_IsHandedOverWholeAndAnsweredWithTheButton) {
    program("cat >asked; echo $* >arguments; echo 0");
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(read("arguments"), "alert\n");
    const QJsonObject alert = QJsonDocument::fromJson(read("asked")).object();
    EXPECT_EQ(alert.value(QLatin1String("messageText")).toString(), QStringLiteral("Really?"));
    EXPECT_EQ(alert.value(QLatin1String("informativeText")).toString(),
              QStringLiteral("It \"cannot\" be undone.\n<b>"));
    EXPECT_EQ(alert.value(QLatin1String("buttons")).toArray().size(), 2);
    EXPECT_EQ(alert.value(QLatin1String("safeButton")).toInt(), 1);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LinuxWindowsTest, AlertThatCrashes_SafeAnswerAndOneLine) {
    program("kill -SEGV $$");
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.contains("has crashed"));
}

TEST_F(LinuxWindowsTest, AlertWithoutDisplay_SafeAnswerAndTheReason) {
    program("echo 0; echo 'quorvane-window: there is no display' >&2; exit 3");
    EXPECT_EQ(ask(), 1) << "what a failing program prints is no answer";
    EXPECT_TRUE(log.contains("there is no display"));
}

TEST_F(LinuxWindowsTest, ProgramIsMissing_SafeAnswerAndOneLine) {
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.contains("quorvane-window cannot be started"));
}

TEST_F(LinuxWindowsTest, NonsenseAsAnswer_CountsAsTheSafeOne) {
    for (const char* answer : {"7", "-1", "yes", "", "0 1"}) {
        program(QByteArray("echo '") + answer + '\'');
        EXPECT_EQ(ask(), 1) << answer;
    }
}

TEST_F(LinuxWindowsTest, TwoAlertsAtOnce_EachHasItsOwnAnswer) {
    program("cat >/dev/null; echo 0");
    int answers = 0;
    for (int i = 0; i < 2; ++i) {
        windows->runModal({QStringLiteral("A"), {}, {QStringLiteral("B")}, 0},
                          [&](int) { ++answers; });
    }
    EXPECT_TRUE(waitUntil([&] { return answers == 2; }));
}

TEST_F(LinuxWindowsTest, EndWhileAnAlertWaits_NeitherAnswersNorHangs) {
    program("echo $$ >pid; exec sleep 100");
    bool answered = false;
    windows->runModal({QStringLiteral("A"), {}, {QStringLiteral("B")}, 0},
                      [&](int) { answered = true; });
    ASSERT_TRUE(waitUntil([&] { return read("pid").endsWith('\n'); }));
    windows.reset();
    EXPECT_FALSE(answered);
    EXPECT_NE(::kill(read("pid").trimmed().toInt(), 0), 0) << "the alert is still on the screen";
}

TEST_F(LinuxWindowsTest, Window_IsShownWithWhatWasSetInTheSameTurn) {
    program("echo $* >arguments");
    const auto window = windows->loadNibNamed(QStringLiteral("Splash"));
    ASSERT_NE(window, nullptr);
    int closed = 0;
    QObject::connect(window.get(), &Window::willClose, window.get(), [&] { ++closed; });
    window->setCollectionBehavior(Window::canJoinAllSpaces);
    window->makeKeyAndOrderFront();
    window->makeKeyAndOrderFront();
    window->setLevel(26);
    ASSERT_TRUE(waitUntil([&] { return closed == 1; }));
    EXPECT_EQ(read("arguments"), "window " + QFile::encodeName(contents()) +
                                     "/Resources/Splash.ui --level 26 --all-desktops\n");
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LinuxWindowsTest, WindowThatCannotBeShown_CountsAsClosed) {
    program("echo 'quorvane-window: there is no display' >&2; exit 3");
    const auto window = windows->loadNibNamed(QStringLiteral("Splash"));
    int closed = 0;
    QObject::connect(window.get(), &Window::willClose, window.get(), [&] { ++closed; });
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(waitUntil([&] { return closed == 1; }));
    EXPECT_TRUE(log.contains("there is no display"));
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(waitUntil([&] { return closed == 2; })) << "it may be tried again";
}

TEST_F(LinuxWindowsTest, LayoutThatIsNotThere_NoWindowAndOneLine) {
    EXPECT_EQ(windows->loadNibNamed(QStringLiteral("Missing")), nullptr);
    EXPECT_TRUE(log.contains("Missing.ui"));
}

TEST_F(LinuxWindowsTest, CopiedText_IsHandedOver) {
    program("cat >copied; echo $* >arguments");
    windows->setString(QStringLiteral("Größe: 5 µm\nend"));
    EXPECT_TRUE(waitUntil([&] { return read("arguments") == "copy\n"; }));
    EXPECT_EQ(read("copied"), QStringLiteral("Größe: 5 µm\nend").toUtf8());
}

} // namespace
} // namespace quorvane::test
