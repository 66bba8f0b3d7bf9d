#include "apps/demo/AnsiPainter.h"
#include "apps/demo/Charset.h"
#include "apps/demo/TerminalTraits.h"

#include <gtest/gtest.h>

namespace quorvane::test {

class DemoTerminalTest : public testing::Test {
  protected:
    static QByteArray paintedFresh(const Canvas& canvas, Charset charset, ColorDepth depth) {
        return AnsiPainter(charset, depth).paint(canvas);
    }

    TerminalTraits traits() const { return TerminalTraits::from(clues_); }

    TerminalTraits::Clues clues_{true, {80, 24}, "UTF-8", "xterm-256color", {}, {}};
};

TEST_F(DemoTerminalTest, SamePicture_NothingIsSent) {
    AnsiPainter painter(Charset::Utf8, ColorDepth::Full);
    Canvas canvas({10, 3});
    canvas.text(2, 1, QStringLiteral("hello"));
    ASSERT_FALSE(painter.paint(canvas).isEmpty());

    EXPECT_TRUE(painter.paint(canvas).isEmpty());
}

TEST_F(DemoTerminalTest, OneChange_OnlyThatIsSent) {
    AnsiPainter painter(Charset::Utf8, ColorDepth::None);
    Canvas canvas({10, 3});
    canvas.text(0, 0, QStringLiteral("hello"));
    [[maybe_unused]] const QByteArray first = painter.paint(canvas);
    canvas.text(1, 0, QStringLiteral("a"));

    EXPECT_EQ(painter.paint(canvas), QByteArray("\x1b[1;2H\x1b[0ma\x1b[0m"));
}

TEST_F(DemoTerminalTest, ChangesFarApart_WhatIsBetweenIsLeftAlone) {
    AnsiPainter painter(Charset::Utf8, ColorDepth::None);
    Canvas canvas({20, 1});
    canvas.text(0, 0, QStringLiteral("abcdefghijklmnopqrst"));
    [[maybe_unused]] const QByteArray first = painter.paint(canvas);
    canvas.text(1, 0, QStringLiteral("1"));
    canvas.text(4, 0, QStringLiteral("2"));
    canvas.text(15, 0, QStringLiteral("3"));

    EXPECT_EQ(painter.paint(canvas), QByteArray("\x1b[1;2H\x1b[0m1cd2\x1b[1;16H3\x1b[0m"));
}

TEST_F(DemoTerminalTest, ForgottenOrResized_IsPaintedWhole) {
    AnsiPainter painter(Charset::Utf8, ColorDepth::None);
    Canvas canvas({10, 3});
    canvas.text(0, 0, QStringLiteral("hello"));
    const QByteArray whole = painter.paint(canvas);
    painter.forget();
    EXPECT_EQ(painter.paint(canvas), whole);

    Canvas larger({12, 3});
    larger.text(0, 0, QStringLiteral("hello"));
    EXPECT_EQ(painter.paint(larger), whole);
}

TEST_F(DemoTerminalTest, Colors_AsManyAsTheTerminalHas) {
    Canvas canvas({1, 1});
    canvas.put(0, 0, u'x', {Rgb{255, 0, 0}, Rgb{8, 8, 8}, false, false});

    EXPECT_TRUE(paintedFresh(canvas, Charset::Utf8, ColorDepth::Full)
                    .contains("\x1b[0;38;2;255;0;0;48;2;8;8;8mx"));
    EXPECT_TRUE(paintedFresh(canvas, Charset::Utf8, ColorDepth::Palette)
                    .contains("\x1b[0;38;5;196;48;5;232mx"));
    EXPECT_TRUE(paintedFresh(canvas, Charset::Utf8, ColorDepth::Basic).contains("\x1b[0;91;40mx"));
    EXPECT_TRUE(paintedFresh(canvas, Charset::Utf8, ColorDepth::None).contains("\x1b[0mx"));
}

TEST_F(DemoTerminalTest, AsciiTerminal_OneCharacterACell) {
    Canvas canvas({3, 1});
    canvas.text(0, 0, QStringLiteral("a\u2192b"));

    EXPECT_TRUE(paintedFresh(canvas, Charset::Ascii, ColorDepth::None).contains("a-b"));
}

TEST_F(DemoTerminalTest, DrawingOutsideTheCanvas_IsCutOff) {
    Canvas canvas({4, 2});
    canvas.text(-2, 0, QStringLiteral("abcdefgh"));
    canvas.text(0, 2, QStringLiteral("below"));
    canvas.fill({-5, -5, 3, 3}, u'#', {});

    EXPECT_EQ(canvas.row(0), QStringLiteral("cdef"));
    EXPECT_EQ(canvas.row(1), QString());
}

TEST_F(DemoTerminalTest, Terminal_MovesOnlyWhereItCan) {
    EXPECT_TRUE(traits().canMove);

    clues_.term = "dumb";
    EXPECT_FALSE(traits().canMove);
    clues_.term = {};
    EXPECT_FALSE(traits().canMove);
    clues_.term = "xterm";
    clues_.size = {59, 24};
    EXPECT_FALSE(traits().canMove);
    clues_.size = {60, 20};
    EXPECT_TRUE(traits().canMove);
    clues_.size = {60, 19};
    EXPECT_FALSE(traits().canMove);
    clues_.size = {80, 24};
    clues_.outputIsTerminal = false;
    EXPECT_FALSE(traits().canMove);
}

TEST_F(DemoTerminalTest, NoColor_AnyValueButAnEmptyOneCounts) {
    clues_.colorTerm = "truecolor";
    EXPECT_EQ(traits().depth, ColorDepth::Full);
    clues_.noColor = "1";
    EXPECT_EQ(traits().depth, ColorDepth::None);
    clues_.noColor = "";
    EXPECT_EQ(traits().depth, ColorDepth::Full);
}

TEST_F(DemoTerminalTest, ColorDepth_AsTheTerminalSays) {
    EXPECT_EQ(traits().depth, ColorDepth::Palette);
    clues_.term = "xterm";
    EXPECT_EQ(traits().depth, ColorDepth::Basic);
    clues_.term = "vt100";
    EXPECT_EQ(traits().depth, ColorDepth::None);
    clues_.term = "xterm-direct";
    EXPECT_EQ(traits().depth, ColorDepth::Full);
}

TEST_F(DemoTerminalTest, Charset_IsTheLocales) {
    EXPECT_EQ(traits().charset, Charset::Utf8);
    clues_.codeset = "utf8";
    EXPECT_EQ(traits().charset, Charset::Utf8);
    clues_.codeset = "ANSI_X3.4-1968";
    EXPECT_EQ(traits().charset, Charset::Ascii);
}

TEST_F(DemoTerminalTest, AsciiOnly_KeepsTheMeaning) {
    EXPECT_EQ(asciiOnly(QStringLiteral("50 % \u2192 70 % \u2014 caf\u00e9\u2026")),
              QStringLiteral("50 % -> 70 % - caf?..."));
    EXPECT_EQ(encoded(QStringLiteral("\u2192"), Charset::Utf8), QByteArray("\xe2\x86\x92"));
}

} // namespace quorvane::test
