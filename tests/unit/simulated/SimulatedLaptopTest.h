#pragma once

#include "core/SharedInstances.h"
#include "mode/QuorvaneModule.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <QDeadlineTimer>
#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace quorvane {

class AppDelegate;

namespace test {

/// A fresh laptop in memory, with fresh shared instances, for each test.
class SimulatedLaptopTest : public testing::Test {
  protected:
    SimulatedLaptopTest();
    ~SimulatedLaptopTest() override;

    [[nodiscard]] SimulatedPlatform& laptop() { return *laptop_; }

    [[nodiscard]] SimulatedSettingsDomain& settings();

    /// The stored value as the settings window would read it.
    [[nodiscard]] QVariant stored(const char* key);

    /// As if it had been stored before the program started, or by another process meanwhile.
    void store(const char* key, const QVariant& value);

    /// The program's start as the real one does it, up to and without the first turn of the main
    /// loop; and with it.
    void startWithoutMainQueue();
    void start();

    /// The user quits; returns whether the program has ended by itself.
    bool quit();

    [[nodiscard]] AppDelegate& delegate() { return *delegate_; }

    [[nodiscard]] bool terminated() const { return terminated_; }

    void registerDefaults();

    /// Puts these modules in the place of the real ones. Before the controller is first used.
    static void useModules(std::function<ModuleList()> makeModules);

    /// Waits for what happens on the thread of a connection to the helper, and is then queued on
    /// the main loop. Returns whether it has.
    template <class Condition>
    static bool comesTrue(Condition condition) {
        const QDeadlineTimer deadline(10000);
        while (!condition() && !deadline.hasExpired()) {
            SimulatedClock::runMainQueue();
            std::this_thread::yield();
        }
        return condition();
    }

    [[nodiscard]] QStringList notificationTitles();
    [[nodiscard]] QStringList logLines();

  private:
    SimulatedPlatform* laptop_;
    std::unique_ptr<AppDelegate> delegate_;
    bool terminated_ = false;
};

} // namespace test
} // namespace quorvane
