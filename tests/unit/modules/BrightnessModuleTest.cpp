#include "modules/BrightnessModule.h"

#include "mode/BatterySaver.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <utility>
#include <vector>

namespace quorvane::test {

namespace {

class BrightnessModuleTest : public SimulatedLaptopTest {
  protected:
    BrightnessModuleTest() { start(); }

    static BrightnessModule& module() {
        return dynamic_cast<BrightnessModule&>(*BatterySaver::batterySaver().modules().front());
    }

    static void switchMode(bool on) { BatterySaver::batterySaver().setEnabled(on); }

    SimulatedDisplays& displays() { return laptop().displays(); }

    [[nodiscard]] float level(std::size_t display = 0) { return displays().levels().at(display); }
};

} // namespace

TEST_F(BrightnessModuleTest, NoActiveDisplay_ReadsFullBrightnessAndChangesNothing) {
    displays().setLevels({});
    EXPECT_EQ(BrightnessModule::getBrightness(), 1.0F);
    BrightnessModule::setBrightness(0.3F);
    switchMode(true);
    EXPECT_EQ(module().originalBrightness(), 1.0F);
    EXPECT_TRUE(module().running());
    switchMode(false);
    EXPECT_EQ(displays().writes(), 0);
    EXPECT_TRUE(logLines().filter(QStringLiteral("returned an error")).isEmpty());
}

TEST_F(BrightnessModuleTest, DarkAtActivation_StaysDarkAndRestoresNothing) {
    displays().setLevels({0.0F});
    switchMode(true);
    EXPECT_EQ(level(), 0.0F);
    displays().userSets(0, 0.2F);
    const int writes = displays().writes();
    switchMode(false);
    EXPECT_EQ(level(), 0.2F);
    EXPECT_EQ(displays().writes(), writes);
}

TEST_F(BrightnessModuleTest, AmountRaisedWhileRunning_IsComputedFromTheRememberedBrightness) {
    displays().setLevels({0.8F});
    switchMode(true);
    EXPECT_FLOAT_EQ(level(), 0.4F);
    store("BrightnessModuleAmount", 100);
    EXPECT_FLOAT_EQ(level(), 0.72F);
    EXPECT_FLOAT_EQ(module().originalBrightness(), 0.8F);
    switchMode(false);
    EXPECT_FLOAT_EQ(level(), 0.8F);
}

TEST_F(BrightnessModuleTest, ScreenMadeBrighterByTheUser_StaysAsItIs) {
    displays().setLevels({0.8F});
    switchMode(true);
    displays().userSets(0, 0.9F);
    switchMode(false);
    EXPECT_FLOAT_EQ(level(), 0.9F);
}

TEST_F(BrightnessModuleTest, ScreenAtTheRememberedBrightness_IsNotWritten) {
    displays().setLevels({0.8F});
    switchMode(true);
    displays().userSets(0, 0.8F);
    const int writes = displays().writes();
    switchMode(false);
    EXPECT_EQ(displays().writes(), writes);
}

TEST_F(BrightnessModuleTest, TwoDisplays_AreBothSetAndOnlyTheFirstIsRememberedAndCompared) {
    displays().setLevels({0.8F, 0.6F});
    switchMode(true);
    EXPECT_FLOAT_EQ(level(0), 0.4F);
    EXPECT_FLOAT_EQ(level(1), 0.4F);
    displays().userSets(1, 1.0F);
    switchMode(false);
    EXPECT_FLOAT_EQ(level(0), 0.8F);
    EXPECT_FLOAT_EQ(level(1), 0.8F);
}

TEST_F(BrightnessModuleTest, AmountBeyondItsRange_IsClampedOnTheFinalValueOnly) {
    displays().setLevels({0.5F});
    switchMode(true);
    store("BrightnessModuleAmount", 150);
    EXPECT_FLOAT_EQ(level(), 0.65F);
    store("BrightnessModuleAmount", 1000);
    EXPECT_EQ(level(), 1.0F);
    store("BrightnessModuleAmount", -100);
    EXPECT_EQ(level(), 0.0F);
}

TEST_F(BrightnessModuleTest, Amounts_MapOntoATenthToNineTenths) {
    switchMode(true);
    const std::vector<std::pair<int, float>> table{
        {0, 0.1F}, {25, 0.3F}, {50, 0.5F}, {75, 0.7F}, {100, 0.9F}};
    for (const auto& [amount, fraction] : table) {
        store("BrightnessModuleAmount", amount);
        EXPECT_FLOAT_EQ(level(), fraction) << amount;
    }
}

TEST_F(BrightnessModuleTest, AmountChangedWhileNotRunning_HasNoEffectUntilActivation) {
    store("BrightnessModuleAmount", 25);
    EXPECT_EQ(displays().writes(), 0);
    EXPECT_EQ(module().brightnessSetting(), 25.0F);
    switchMode(true);
    EXPECT_FLOAT_EQ(level(), 0.3F);
}

TEST_F(BrightnessModuleTest, AmountSetOnTheModule_IsStored) {
    module().setBrightnessSetting(30.0F);
    EXPECT_EQ(stored("BrightnessModuleAmount"), QVariant(QStringLiteral("30")));
}

TEST_F(BrightnessModuleTest, DisplayListThatFails_IsLoggedAndNoDisplayTouched) {
    displays().failListing(5);
    switchMode(true);
    EXPECT_EQ(laptop().logSink().count(
                  QStringLiteral("Call to CGGetActiveDisplayList returned an error (5)")),
              1);
    EXPECT_TRUE(module().running());
    EXPECT_EQ(displays().writes(), 0);
    switchMode(false);
    EXPECT_FALSE(module().running());
}

TEST_F(BrightnessModuleTest, BrightnessThatCannotBeRead_IsLoggedAndTakenAsFull) {
    displays().setLevels({0.8F});
    displays().failReading(7);
    EXPECT_EQ(BrightnessModule::getBrightness(), 1.0F);
    EXPECT_EQ(laptop().logSink().count(
                  QStringLiteral("Call to IODisplayGetFloatParameter returned an error (7)")),
              1);
}

TEST_F(BrightnessModuleTest, BrightnessThatCannotBeSet_DoesNotFailTheModule) {
    displays().failWriting(13);
    switchMode(true);
    EXPECT_TRUE(module().running());
    switchMode(false);
    EXPECT_FALSE(module().running());
}

TEST_F(BrightnessModuleTest, MoreThanSixteenDisplays_AreLeftAlone) {
    displays().setLevels(std::vector<float>(20, 1.0F));
    switchMode(true);
    EXPECT_EQ(displays().writes(), 16);
    EXPECT_EQ(level(16), 1.0F);
}

TEST_F(BrightnessModuleTest, WhatWasFound_IsRememberedForACrashUntilTheModeEnds) {
    EXPECT_EQ(displays().journalSize(), 0U);
    switchMode(true);
    EXPECT_EQ(displays().journalSize(), 1U);
    switchMode(false);
    EXPECT_EQ(displays().journalSize(), 0U);
}

TEST_F(BrightnessModuleTest, Texts) {
    EXPECT_EQ(module().label(), QStringLiteral("Dimming Screen"));
    EXPECT_EQ(module().imageName(), QStringLiteral("icon-brightness"));
    EXPECT_EQ(module().identifier(), QStringLiteral("BrightnessModule"));
}

} // namespace quorvane::test
