#include "apps/window/WindowOptions.h"

#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

namespace quorvane {

namespace {

using Task = WindowOptions::Task;

std::variant<WindowOptions, WindowOptions::Message> parse(const QString& line) {
    return WindowOptions::parse(
        (QStringLiteral("quorvane-window ") + line).split(u' ', Qt::SkipEmptyParts),
        QStringLiteral("1.2"));
}

} // namespace

TEST(WindowOptionsTest, WindowWithEverything_IsUnderstoodInAnyOrder) {
    for (const QString& line : {QStringLiteral("window --level 26 a.ui --center --all-desktops"),
                                QStringLiteral("window a.ui --all-desktops --center --level 26")}) {
        const auto parsed = parse(line);
        const auto* options = std::get_if<WindowOptions>(&parsed);
        ASSERT_NE(options, nullptr) << line.toStdString();
        EXPECT_EQ(options->task, Task::window);
        EXPECT_EQ(options->layoutFile, QStringLiteral("a.ui"));
        EXPECT_EQ(options->level, 26);
        EXPECT_TRUE(options->center);
        EXPECT_TRUE(options->allDesktops);
    }
}

TEST(WindowOptionsTest, PlainWindow_IsAnOrdinaryOne) {
    const auto parsed = parse(QStringLiteral("window a.ui"));
    const auto& options = std::get<WindowOptions>(parsed);
    EXPECT_EQ(options.level, 0);
    EXPECT_FALSE(options.center);
    EXPECT_FALSE(options.allDesktops);
}

TEST(WindowOptionsTest, AlertAndCopy_TakeNoArguments) {
    EXPECT_EQ(std::get<WindowOptions>(parse(QStringLiteral("alert"))).task, Task::alert);
    EXPECT_EQ(std::get<WindowOptions>(parse(QStringLiteral("copy"))).task, Task::copy);
}

TEST(WindowOptionsTest, HelpAndVersion_AreNoErrors) {
    for (const char* line : {"--help", "-h", "window --help", "--version", "-v"}) {
        const auto parsed = parse(QString::fromLatin1(line));
        const auto* message = std::get_if<WindowOptions::Message>(&parsed);
        ASSERT_NE(message, nullptr) << line;
        EXPECT_FALSE(message->isError) << line;
    }
    EXPECT_EQ(std::get<WindowOptions::Message>(parse(QStringLiteral("--version"))).text,
              QStringLiteral("quorvane-window 1.2\n"));
}

TEST(WindowOptionsTest, AnythingElse_IsAnErrorOfOneLine) {
    for (const char* line :
         {"", "open", "window", "window --center", "window a.ui b.ui", "window a.ui --level",
          "window a.ui --level high", "window a.ui --wide", "alert now", "copy --center"}) {
        const auto parsed = parse(QString::fromLatin1(line));
        const auto* message = std::get_if<WindowOptions::Message>(&parsed);
        ASSERT_NE(message, nullptr) << line;
        EXPECT_TRUE(message->isError) << line;
        EXPECT_EQ(message->text.count(u'\n'), 1) << line;
    }
}

} // namespace quorvane
