#include "apps/helper/PowerSwitch.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <utility>

namespace quorvane::test {
namespace {

/// What a driver of the test's does and was asked.
struct DriverState {
    bool isThere = true;
    bool fails = false;
    bool isSlow = false; ///< answers when it is told to
    QStringList asked;
    std::vector<Reported> waiting;

    void answer() {
        for (const Reported& each : std::exchange(waiting, {})) {
            each({!fails, fails ? QStringLiteral("broken") : QStringLiteral("driver")});
        }
    }
};

class ScriptedDriver final : public Driver {
  public:
    explicit ScriptedDriver(DriverState& state) : state_(state) {}

    [[nodiscard]] QString name() const override { return QStringLiteral("driver"); }

    [[nodiscard]] bool probe() const override { return state_.isThere; }

    void engage(const Reported& reported) override { take(QStringLiteral("engage"), reported); }

    void release(const Reported& reported) override { take(QStringLiteral("release"), reported); }

  private:
    void take(const QString& what, const Reported& reported) {
        state_.asked += what;
        state_.waiting.push_back(reported);
        if (!state_.isSlow) {
            state_.answer();
        }
    }

    DriverState& state_;
};

class PowerSwitchTest : public testing::Test {
  protected:
    [[nodiscard]] PowerSwitch::Drivers drivers() {
        PowerSwitch::Drivers all;
        all.push_back(std::make_unique<ScriptedDriver>(first));
        all.push_back(std::make_unique<ScriptedDriver>(second));
        return all;
    }

    void hold(const char* party) {
        power.hold(QString::fromLatin1(party), [this](const Outcome& each) { note(each); });
    }

    void release(const char* party) {
        power.release(QString::fromLatin1(party), [this](const Outcome& each) { note(each); });
    }

    void note(const Outcome& outcome) {
        outcomes += (outcome.done ? QString() : QStringLiteral("failed: ")) + outcome.text;
    }

    [[nodiscard]] std::string said() const { return outcomes.join(QLatin1Char('|')).toStdString(); }

    DriverState first;
    DriverState second;
    QStringList outcomes;
    PowerSwitch power{{QStringLiteral("on"), QStringLiteral("off"), QStringLiteral("still on"),
                       QStringLiteral("absent")},
                      drivers()};
};

TEST_F(PowerSwitchTest, TwoParties_SwitchOnceAndPutBackAfterTheLast) {
    hold("a");
    hold("b");
    release("a");
    release("b");
    EXPECT_EQ(said(), "on (driver)|on|still on|off (driver)");
    EXPECT_EQ(first.asked, QStringList({QStringLiteral("engage"), QStringLiteral("release")}));
    EXPECT_TRUE(second.asked.isEmpty());
}

TEST_F(PowerSwitchTest, MachineWithoutTheFirstDriver_UsesTheSecond) {
    first.isThere = false;
    hold("a");
    EXPECT_TRUE(first.asked.isEmpty());
    EXPECT_EQ(second.asked.size(), 1);
}

TEST_F(PowerSwitchTest, DriverThatAppearsMeanwhile_DoesNotTakeOver) {
    first.isThere = false;
    hold("a");
    first.isThere = true;
    release("a");
    EXPECT_TRUE(first.asked.isEmpty());
    EXPECT_EQ(second.asked.size(), 2);
}

TEST_F(PowerSwitchTest, MachineWithoutAny_SaysSo) {
    first.isThere = second.isThere = false;
    EXPECT_FALSE(power.isAvailable());
    hold("a");
    EXPECT_EQ(said(), "failed: absent");
    EXPECT_FALSE(power.isHeld());
}

TEST_F(PowerSwitchTest, DriverThatFails_HoldsNothing) {
    first.fails = true;
    hold("a");
    EXPECT_EQ(said(), "failed: broken");
    EXPECT_FALSE(power.isHeld());
    first.fails = false;
    hold("a");
    EXPECT_EQ(first.asked.count(QStringLiteral("engage")), 2);
}

TEST_F(PowerSwitchTest, ReleasedByWhoDoesNotHold_NothingIsAsked) {
    release("a");
    EXPECT_EQ(said(), "off");
    EXPECT_TRUE(first.asked.isEmpty());
}

TEST_F(PowerSwitchTest, SamePartyTwice_HoldsOnce) {
    hold("a");
    hold("a");
    release("a");
    EXPECT_FALSE(power.isHeld());
    EXPECT_EQ(first.asked.size(), 2);
}

TEST_F(PowerSwitchTest, RequestsWhileTheDriverIsAtWork_AreCarriedOutInTheirOrder) {
    first.isSlow = true;
    hold("a");
    release("a");
    hold("b");
    EXPECT_EQ(said(), "");
    EXPECT_EQ(first.asked.size(), 1);
    first.answer();
    first.answer();
    first.answer();
    EXPECT_EQ(said(), "on (driver)|off (driver)|on (driver)");
    EXPECT_TRUE(power.isHeld());
}

TEST_F(PowerSwitchTest, EndOfTheProgram_PutsBackForAll) {
    hold("a");
    hold("b");
    power.releaseAll();
    EXPECT_FALSE(power.isHeld());
    EXPECT_EQ(first.asked.last(), QStringLiteral("release"));
}

} // namespace
} // namespace quorvane::test
