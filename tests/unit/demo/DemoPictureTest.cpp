#include "apps/demo/Dashboard.h"
#include "apps/demo/NotificationBubble.h"
#include "apps/demo/TerminalTraits.h"
#include "platform/PowerSources.h"
#include "tests/support/Utc.h"

#include <gtest/gtest.h>

namespace quorvane::test {

class DemoPictureTest : public testing::Test {
  protected:
    DemoPictureTest() {
        state_.time = utc({2026, 1, 5}, {10, 51});
        state_.percent = 70;
        state_.percentColor = {0.0, 0.6, 0.0, 1.0};
        state_.pluggedIn = false;
        state_.watts = 8.5;
        state_.secondsLeft = 13860.0;
        state_.minutesSaved = 12.34;
    }

    Canvas draw(QSize size = {80, 24}) const {
        return Dashboard(style_).draw(state_, events_, size);
    }

    static QString text(const Canvas& canvas) {
        QString all;
        for (int row = 0; row < canvas.size().height(); ++row) {
            all += canvas.row(row) + u'\n';
        }
        return all;
    }

    static bool contains(const Canvas& canvas, const QString& words) {
        return text(canvas).contains(words);
    }

    // A point of the screen's wallpaper.
    Cell wallpaper(double brightness) {
        state_.brightness = brightness;
        return draw().at(40, 9);
    }

    static int light(const Cell& cell) {
        const Rgb color = cell.style.background.value_or(Rgb{});
        return color.red + color.green + color.blue;
    }

    void ask() {
        UserNotification question;
        question.title = QStringLiteral("Less Than 70% Battery Remaining");
        question.informativeText = QStringLiteral("Start Low Power Mode?");
        question.actionButtonTitle = QStringLiteral("Start");
        question.otherButtonTitle = QStringLiteral("Not Now");
        state_.notification = question;
    }

    PictureStyle style_;
    DayState state_;
    QList<DemoEvent> events_;
};

TEST_F(DemoPictureTest, Facts_AreAllThere) {
    state_.modeOn = true;
    state_.brightness = 0.5;
    const Canvas canvas = draw();

    for (const char* fact : {"Monday 10:51", "70 %  on battery", "\u25cf on", "12.3", "50 %",
                             "8.5 W", "3 h 51 min", "ask", "threshold"}) {
        EXPECT_TRUE(contains(canvas, QString::fromUtf8(fact))) << fact << "\n"
                                                               << text(canvas).toStdString();
    }
}

TEST_F(DemoPictureTest, DarkerDisplay_DarkerScreen) {
    for (const Shading shading : {Shading::Colors, Shading::Greys}) {
        style_.shading = shading;
        EXPECT_LT(light(wallpaper(0.1)), light(wallpaper(0.5)));
        EXPECT_LT(light(wallpaper(0.5)), light(wallpaper(0.7)));
        EXPECT_LT(light(wallpaper(0.7)), light(wallpaper(1.0)));
    }
}

TEST_F(DemoPictureTest, NoColors_ScreenIsShadedWithCharacters) {
    style_.shading = Shading::Characters;

    EXPECT_EQ(wallpaper(1.0).character, QChar(u'\u2588'));
    EXPECT_EQ(wallpaper(0.5).character, QChar(u'\u2592'));
    EXPECT_EQ(wallpaper(0.0).character, QChar(u' '));
}

TEST_F(DemoPictureTest, Battery_HasTheMonitorsColor) {
    state_.percentColor = {0.6, 0.0, 0.0, 1.0};
    const Canvas canvas = draw();

    int row = 0;
    while (row < 24 && !canvas.row(row).startsWith(QStringLiteral(" Battery"))) {
        ++row;
    }
    ASSERT_LT(row, 24);
    EXPECT_EQ(canvas.at(10, row).style.foreground, (Rgb{153, 0, 0}));
}

TEST_F(DemoPictureTest, Question_ShowsTitleTextAndButtonsAtEverySize) {
    ask();
    for (const QSize size : {QSize(60, 20), QSize(80, 24), QSize(120, 40), QSize(300, 100)}) {
        const Canvas canvas = draw(size);
        for (const char* words :
             {"Less Than 70% Battery", "Start Low Power Mode?", "[ Start ] [ Not Now ]"}) {
            EXPECT_TRUE(contains(canvas, QString::fromLatin1(words))) << words << "\n"
                                                                      << text(canvas).toStdString();
        }
    }
}

TEST_F(DemoPictureTest, PointedButton_LooksDifferent) {
    ask();
    const Canvas before = draw();
    state_.pointedButton = QStringLiteral("Start");
    const Canvas after = draw();

    int changed = 0;
    for (int row = 0; row < 24; ++row) {
        for (int column = 0; column < 80; ++column) {
            EXPECT_EQ(before.at(column, row).character, after.at(column, row).character);
            changed += before.at(column, row) == after.at(column, row) ? 0 : 1;
        }
    }
    EXPECT_EQ(changed, QStringLiteral("[ Start ]").size());
}

TEST_F(DemoPictureTest, TextTooLongForTheScreen_StaysInsideIt) {
    ask();
    state_.notification->informativeText = QStringLiteral("words ").repeated(200);
    const Canvas canvas = draw({60, 20});

    EXPECT_TRUE(contains(canvas, QStringLiteral("[ Start ] [ Not Now ]")));
    EXPECT_TRUE(contains(canvas, QStringLiteral("Battery  ")));
}

TEST_F(DemoPictureTest, CordShowsExactlyWhilePluggedIn) {
    const QString cord = QStringLiteral("\u2501\u258c");
    EXPECT_FALSE(contains(draw(), cord));
    state_.pluggedIn = true;
    state_.secondsLeft = timeRemainingUnlimited;
    EXPECT_TRUE(contains(draw(), cord));
}

TEST_F(DemoPictureTest, Ascii_HasNothingElse) {
    ask();
    state_.pluggedIn = true;
    style_ = {Charset::Ascii, Shading::Characters};
    events_ = {
        {DemoEvent::Kind::Screen, state_.time, 70, QStringLiteral("brightness 100 % \u2192 50 %")}};
    const QString all = text(draw());

    for (const QChar character : all) {
        EXPECT_LT(character.unicode(), 0x7f);
    }
    EXPECT_TRUE(all.contains(QStringLiteral("brightness 100 % -> 50 %")));
}

TEST_F(DemoPictureTest, LastEvents_NewestLast) {
    for (int i = 0; i < 30; ++i) {
        events_.append({DemoEvent::Kind::Log, state_.time, 70, QStringLiteral("line %1.").arg(i)});
    }
    const QString all = text(draw());

    EXPECT_FALSE(all.contains(QStringLiteral("line 0.")));
    EXPECT_LT(all.indexOf(QStringLiteral("line 28.")), all.indexOf(QStringLiteral("line 29.")));
    EXPECT_TRUE(all.contains(QStringLiteral("line 29.")));
}

TEST_F(DemoPictureTest, TooSmallAWindow_IsSaid) {
    EXPECT_EQ(draw({40, 10}).row(0), QStringLiteral("The window is too small."));
    EXPECT_EQ(draw({3, 1}).row(0), QStringLiteral("The"));
    EXPECT_EQ(draw({0, 0}).size(), QSize(0, 0));
}

TEST_F(DemoPictureTest, Wrapped_BreaksAtSpacesAndLosesNothing) {
    EXPECT_EQ(wrapped(QStringLiteral("one two three"), 7),
              (QStringList{QStringLiteral("one two"), QStringLiteral("three")}));
    EXPECT_EQ(wrapped(QStringLiteral("abcdefgh"), 3),
              (QStringList{QStringLiteral("abc"), QStringLiteral("def"), QStringLiteral("gh")}));
    EXPECT_EQ(wrapped(QString(), 5), QStringList{QString()});
}

} // namespace quorvane::test
