#include "battery/Battery.h"
#include "mode/BatterySaver.h"
#include "tests/unit/simulated/LaptopDays.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <optional>

namespace quorvane::test {

namespace {

constexpr std::int64_t minutesOfAnHour = 60;
constexpr std::int64_t minutesOfAWeek = 7 * LaptopDays::minutesOfADay;

/// What some time has brought.
struct Tally {
    std::int64_t minutesOn = 0; ///< that ended with the mode on
    std::int64_t switches = 0;
    std::int64_t firings = 0;
    std::int64_t announcements = 0;
    std::int64_t readings = 0;
    std::int64_t samples = 0;
    std::int64_t movesOfTheHistory = 0; ///< to another place in memory
};

/// The whole program on a laptop that is used and charged from day to day.
class SimulatedWeekTest : public SimulatedLaptopTest {
  protected:
    SimulatedWeekTest() { store("QuorvaneAutoStartSetting", 0); }

    void startDays() {
        days_.emplace(laptop());
        start();
    }

    static bool modeIsOn() { return BatterySaver::batterySaver().enabled(); }

    [[nodiscard]] Seconds shortestPeriod() { return laptop().clock().shortestPeriod(); }

    void passMinute() { days_->passMinute(); }

    Tally live(std::int64_t minutes) {
        const Tally before = soFar();
        Tally lived;
        const void* place = placeOfTheHistory();
        for (std::int64_t i = 0; i < minutes; ++i) {
            const bool wasOn = modeIsOn();
            passMinute();
            lived.minutesOn += modeIsOn() ? 1 : 0;
            lived.switches += modeIsOn() != wasOn ? 1 : 0;
            const void* const now = placeOfTheHistory();
            lived.movesOfTheHistory += std::exchange(place, now) != now ? 1 : 0;
        }
        const Tally after = soFar();
        lived.firings = after.firings - before.firings;
        lived.announcements = after.announcements - before.announcements;
        lived.readings = after.readings - before.readings;
        lived.samples = after.samples - before.samples;
        return lived;
    }

  private:
    [[nodiscard]] Tally soFar() {
        Tally tally;
        tally.firings = laptop().clock().firings();
        tally.announcements = days_->announcements();
        tally.readings = laptop().powerSources().readings();
        tally.samples = Battery::battery().dataPoints().size();
        return tally;
    }

    static const void* placeOfTheHistory() { return Battery::battery().dataTimes().constData(); }

    std::optional<LaptopDays> days_;
};

} // namespace

TEST_F(SimulatedWeekTest, Week_HasTheModeOnTwiceADayWhileTheBatteryIsLow) {
    startDays();
    const Tally week = live(minutesOfAWeek);
    EXPECT_EQ(week.switches, 7 * 4);
    // Down to 25 percent and to 40, each time from 70 on, at a quarter of a percent a minute. The
    // percentage is rounded, and the plug comes within a minute.
    EXPECT_NEAR(static_cast<double>(week.minutesOn), 7 * (180 + 120), 7 * 2 * 4);
}

TEST_F(SimulatedWeekTest, ModeOff_NoTimerIsShorterThanAMinute) {
    for (const char* key : {"TurboModuleActivated", "AppNapModuleActivated",
                            "BrightnessModuleActivated", "BrowserModuleActivated"}) {
        store(key, true);
    }
    startDays();
    bool someWereShorterInTheMode = false;
    for (std::int64_t i = 0; i < LaptopDays::minutesOfADay; ++i) {
        passMinute();
        if (modeIsOn()) {
            someWereShorterInTheMode |= shortestPeriod() < Seconds(60);
        } else {
            ASSERT_GE(shortestPeriod(), Seconds(60)) << "minute " << i;
        }
    }
    EXPECT_TRUE(someWereShorterInTheMode);
}

TEST_F(SimulatedWeekTest, Week_FiresNoMoreTimersThanItsWorkNeeds) {
    startDays();
    const Tally week = live(minutesOfAWeek);
    // The battery is looked at every two minutes and updates are looked for every hour; in the mode
    // its savings are counted every minute. A switch begins that and has a notification taken away.
    const std::int64_t always = minutesOfAWeek / 2 + minutesOfAWeek / minutesOfAnHour;
    EXPECT_GE(week.firings, always);
    EXPECT_LE(week.firings, always + week.minutesOn + 2 * week.switches);
}

TEST_F(SimulatedWeekTest, Week_AsksForAReadingOnlyEveryTwoMinutes) {
    startDays();
    const Tally week = live(minutesOfAWeek);
    EXPECT_EQ(week.readings, minutesOfAWeek / 2);
    EXPECT_GT(week.announcements, 0);
    EXPECT_EQ(week.samples, week.readings + week.announcements);
}

TEST_F(SimulatedWeekTest, FourMoreWeeks_AreLikeTheFirstAndCopyNoHistory) {
    startDays();
    Tally week = live(minutesOfAWeek);
    std::int64_t moves = week.movesOfTheHistory;
    for (int i = 0; i < 4; ++i) {
        const Tally next = live(minutesOfAWeek);
        EXPECT_EQ(next.samples, week.samples);
        EXPECT_EQ(next.switches, week.switches);
        EXPECT_NEAR(static_cast<double>(next.firings), static_cast<double>(week.firings), 10.0);
        moves += next.movesOfTheHistory;
    }
    // A list that grows moves each time that it has doubled, which for these samples is 16 times.
    EXPECT_LE(moves, 20);
}

} // namespace quorvane::test
