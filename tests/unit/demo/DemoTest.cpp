#include "apps/demo/Day.h"
#include "apps/demo/Summary.h"
#include "mode/BatterySaver.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "plist/PropertyList.h"
#include "tests/support/Utc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace quorvane::test {

using Kind = DemoEvent::Kind;

class DemoTest : public testing::Test {
  protected:
    void begin(const DayPlan& plan) {
        day_.reset(); // there is one day at a time
        day_ = std::make_unique<Day>(plan, [this](const DemoEvent& event) {
            events_.append(event);
            brightness_.append(day_->platform().displays().levels().front());
        });
        day_->begin();
    }

    void run(const DayPlan& plan) {
        begin(plan);
        day_->finish();
    }

    // The events of one kind, with the texts that begin so.
    QList<DemoEvent> events(Kind kind, const QString& beginning = {}) const {
        QList<DemoEvent> found;
        for (const DemoEvent& event : events_) {
            if (event.kind == kind && event.text.startsWith(beginning)) {
                found.append(event);
            }
        }
        return found;
    }

    DemoEvent only(Kind kind, const QString& beginning = {}) const {
        const QList<DemoEvent> found = events(kind, beginning);
        EXPECT_EQ(found.size(), 1)
            << kindName(kind).toStdString() << ": " << beginning.toStdString();
        return found.isEmpty() ? DemoEvent{} : found.first();
    }

    QStringList titles() const { return day_->platform().userNotifications().titles(); }

    float darkest() const { return *std::min_element(brightness_.begin(), brightness_.end()); }

    std::unique_ptr<Day> day_;
    QList<DemoEvent> events_;
    QList<float> brightness_; // at each event
};

TEST_F(DemoTest, AutomaticMode_StartsAtThresholdDimsAndReportsMinutes) {
    begin({LaunchMode::Automatic, 70, {}});
    float minutesSaved = 0.0F;
    while (!day_->isOver()) {
        day_->advance(Seconds(1.0));
        minutesSaved = std::max(minutesSaved, BatterySaver::batterySaver().minutesSaved());
    }

    const DemoEvent on = only(Kind::Mode, QStringLiteral("Low Power Mode is on"));
    EXPECT_EQ(on.percent, 70);
    EXPECT_EQ(only(Kind::Screen, QStringLiteral("brightness 100 % \u2192 50 %")).percent, 70);
    EXPECT_TRUE(events(Kind::Question).isEmpty());

    EXPECT_EQ(titles(), (QStringList{QStringLiteral("Low Power Mode is on"),
                                     QStringLiteral("You saved %1 minutes of battery!")
                                         .arg(static_cast<int>(minutesSaved))}));
    EXPECT_GT(minutesSaved, 2.0F);
    EXPECT_EQ(brightness_.last(), 1.0F);
}

TEST_F(DemoTest, AskMode_Start_StartsOnlyWhenTheUserHasClicked) {
    run({LaunchMode::Ask, 70, DayPlan::Answer::Start});

    const DemoEvent question = only(Kind::Question);
    const DemoEvent click = only(Kind::User, QStringLiteral("clicks"));
    const DemoEvent on = only(Kind::Mode, QStringLiteral("Low Power Mode is on"));
    EXPECT_EQ(question.percent, 70);
    EXPECT_EQ(question.text,
              QStringLiteral("Less Than 70% Battery Remaining \u2014 Start Low Power "
                             "Mode? [Start] [Not Now]"));
    EXPECT_EQ(click.text, QStringLiteral("clicks [Start]"));
    EXPECT_LT(question.time, click.time);
    EXPECT_EQ(on.time, click.time);
    EXPECT_FLOAT_EQ(darkest(), 0.5F);
    EXPECT_TRUE(titles().last().startsWith(QStringLiteral("You saved ")));
}

TEST_F(DemoTest, AskMode_NotNow_NeverDims) {
    run({LaunchMode::Ask, 70, DayPlan::Answer::NotNow});

    EXPECT_EQ(only(Kind::User, QStringLiteral("clicks")).text, QStringLiteral("clicks [Not Now]"));
    EXPECT_TRUE(events(Kind::Mode).isEmpty());
    EXPECT_TRUE(events(Kind::Screen).isEmpty());
    EXPECT_TRUE(events(Kind::Notice).isEmpty());
    EXPECT_EQ(darkest(), 1.0F);
    EXPECT_EQ(day_->platform().displays().writes(), 0);
    EXPECT_FALSE(day_->result().modeWasOn);
}

TEST_F(DemoTest, ManualMode_NothingHappensAtThresholdUserSwitchesBothWays) {
    run({LaunchMode::Manual, 70, {}});

    const DemoEvent threshold = only(Kind::Hardware, QStringLiteral("the charge has reached"));
    const DemoEvent on = only(Kind::Mode, QStringLiteral("Low Power Mode is on"));
    const DemoEvent off = only(Kind::Mode, QStringLiteral("Low Power Mode is off"));
    const DemoEvent plugged = events(Kind::Hardware, QStringLiteral("plugged in")).last();
    EXPECT_EQ(threshold.percent, 70);
    EXPECT_EQ(on.percent, 55);
    EXPECT_EQ(on.time, only(Kind::User, QStringLiteral("switches Low Power Mode on")).time);
    EXPECT_GT(off.time, plugged.time);
    EXPECT_EQ(off.time, only(Kind::User, QStringLiteral("switches Low Power Mode off")).time);
    EXPECT_TRUE(events(Kind::Question).isEmpty());
    EXPECT_EQ(events(Kind::Notice).size(), 1);
    EXPECT_TRUE(titles().last().startsWith(QStringLiteral("You saved ")));
}

TEST_F(DemoTest, PlugIn_EndsTheModeAtOnceWithTheScreenAsBefore) {
    run({LaunchMode::Automatic, 70, {}});

    const DemoEvent plugged = events(Kind::Hardware, QStringLiteral("plugged in")).last();
    EXPECT_EQ(only(Kind::Mode, QStringLiteral("Low Power Mode is off")).time, plugged.time);
    EXPECT_EQ(day_->platform().displays().levels().front(), 1.0F);
    EXPECT_EQ(day_->platform().displays().journalSize(), 0U);
}

TEST_F(DemoTest, BrightnessKey_IsTheUsersOnlyChangeOfTheScreen) {
    run({LaunchMode::Automatic, 70, {}});

    const QList<DemoEvent> changes = events(Kind::Screen);
    ASSERT_EQ(changes.size(), 3);
    EXPECT_EQ(changes.at(1).text, QStringLiteral("brightness 50 % \u2192 70 %"));
    EXPECT_EQ(day_->platform().displays().writes(), 2);
}

TEST_F(DemoTest, ThresholdThatIsNeverReached_LeavesEverythingAlone) {
    run({LaunchMode::Automatic, 0, {}});

    EXPECT_TRUE(events(Kind::Mode).isEmpty());
    EXPECT_TRUE(titles().isEmpty());
    EXPECT_EQ(darkest(), 1.0F);
}

TEST_F(DemoTest, ThresholdOfAFullBattery_AsksAsSoonAsUnplugged) {
    run({LaunchMode::Ask, 100, DayPlan::Answer::Start});

    EXPECT_EQ(only(Kind::Question).time.time(), QTime(9, 15));
    EXPECT_EQ(only(Kind::Mode, QStringLiteral("Low Power Mode is on")).percent, 100);
}

TEST_F(DemoTest, DimmedScreen_LeavesMoreInTheBattery) {
    run({LaunchMode::Ask, 70, DayPlan::Answer::NotNow});
    const Discharge bright = day_->result().discharge.value();
    events_.clear();
    run({LaunchMode::Ask, 70, DayPlan::Answer::Start});
    const Discharge dim = day_->result().discharge.value();

    EXPECT_EQ(bright.end, dim.end);
    EXPECT_GT(dim.percent, bright.percent + 5.0);
    EXPECT_NEAR(dim.percentUndimmed, bright.percent, 1e-6);
    EXPECT_NEAR(bright.percentUndimmed, bright.percent, 1e-6);
}

TEST_F(DemoTest, Quit_StoresHistoryAndLogAndIsTheEnd) {
    run({LaunchMode::Automatic, 70, {}});

    const QMap<QString, QByteArray> files = day_->platform().files().files();
    const PropertyListResult history = readPropertyList(
        files.value(QStringLiteral("/home/user/.local/share/Quorvane/Battery.plist")));
    ASSERT_TRUE(history.value) << history.error.toStdString();
    const qsizetype samples =
        history.value->toMap().value(QStringLiteral("dataPoints")).toList().size();
    EXPECT_GT(samples, 0);
    EXPECT_EQ(only(Kind::Stored, QStringLiteral("Battery.plist")).text,
              QStringLiteral("Battery.plist (%1 battery samples)").arg(samples));
    EXPECT_EQ(events_.last().text, QStringLiteral("The main queue is finished!"));
    EXPECT_TRUE(day_->isOver());

    const QDateTime end = day_->state().time;
    day_->advance(Seconds(60.0));
    EXPECT_EQ(day_->state().time, end);
}

TEST_F(DemoTest, Program_ReadsItsSettingsFromTheLaptop) {
    begin({LaunchMode::Manual, 35, {}});

    EXPECT_TRUE(BatterySaver::batterySaver().isLaunchMode(LaunchMode::Manual));
    EXPECT_EQ(BatterySaver::batterySaver().batteryThreshhold(), 35);
    EXPECT_EQ(events_.first().text, QStringLiteral("launch mode manual, threshold 35 %"));
}

TEST_F(DemoTest, State_ShowsQuestionAndButtonUnderThePointer) {
    begin({LaunchMode::Ask, 70, DayPlan::Answer::NotNow});
    while (events(Kind::Question).isEmpty()) {
        day_->advance(Seconds(1.0));
    }

    const DayState asked = day_->state();
    ASSERT_TRUE(asked.notification);
    EXPECT_EQ(asked.notification->title, QStringLiteral("Less Than 70% Battery Remaining"));
    EXPECT_EQ(asked.pointedButton, QString());
    day_->advance(Seconds(4.0));
    EXPECT_EQ(day_->state().pointedButton, QStringLiteral("Not Now"));
    day_->advance(Seconds(2.0));
    EXPECT_EQ(day_->state().pointedButton, QString());
    EXPECT_FALSE(day_->state().notification);
}

TEST_F(DemoTest, TimeInUnevenPieces_BringsTheSameDay) {
    run({LaunchMode::Ask, 70, DayPlan::Answer::Start});
    const QStringList evenly = keyEvents(events_);
    events_.clear();
    begin({LaunchMode::Ask, 70, DayPlan::Answer::Start});
    while (!day_->isOver()) {
        day_->advance(Seconds(37.3));
    }

    EXPECT_EQ(keyEvents(events_), evenly);
}

TEST_F(DemoTest, ClosingWords_TellWhatTheProgramSaid) {
    run({LaunchMode::Automatic, 70, {}});

    const QStringList words = closingWords(day_->result());
    EXPECT_TRUE(words.first().contains(titles().last())) << words.first().toStdString();
    EXPECT_TRUE(words.at(1).contains(QStringLiteral("14:30"))) << words.at(1).toStdString();
    EXPECT_TRUE(words.last().contains(QStringLiteral("simulated")));
}

TEST_F(DemoTest, ClosingWords_ClaimNothingWithoutTheMode) {
    run({LaunchMode::Ask, 70, DayPlan::Answer::NotNow});

    EXPECT_EQ(closingWords(day_->result()).first(),
              QStringLiteral("Low Power Mode was never on, so nothing was saved."));
}

TEST_F(DemoTest, EventLine_HasTimePercentAndKind) {
    const DemoEvent event{Kind::Question, utc({2026, 1, 5}, {11, 24}), 69,
                          QStringLiteral("Start?")};

    EXPECT_EQ(eventLine(event), QStringLiteral("11:24   69 %  question: Start?"));
}

} // namespace quorvane::test
