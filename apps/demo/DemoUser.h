#pragma once

#include "apps/demo/DayPlan.h"
#include "apps/demo/DemoEvent.h"
#include "platform/Clock.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace quorvane {

class Laptop;
class SimulatedPlatform;
struct UserNotification;

/// Plays the user: carries the laptop away and back, answers what the program asks, presses the
/// brightness keys, and in the manual launch mode switches the mode himself. Does what a user can
/// do and nothing else. Main thread only.
class DemoUser : public QObject {
    Q_OBJECT

  public:
    DemoUser(const DayPlan& plan, SimulatedPlatform& platform, Laptop& laptop, Report report);
    ~DemoUser() override;

    /// The text of the button that the pointer rests on, shortly before the click; else empty.
    [[nodiscard]] QString pointedButton() const { return pointedButton_; }

    /// Lets the user act at this time of the day, counted from midnight, unless it has passed.
    void at(Seconds timeOfDay, std::function<void()> action);

  private:
    void unplug();
    void plugIn();
    void brightenScreen();
    void lookAtBattery();
    void endModeByHand();
    void answer(const UserNotification& notification);
    void click(const UserNotification& notification, bool starts);
    void later(Seconds delay, std::function<void()> action);

    DayPlan plan_;
    SimulatedPlatform& platform_;
    Laptop& laptop_;
    Report report_;
    QString pointedButton_;
    bool hasStartedMode_ = false;
    std::vector<std::unique_ptr<Timer>> timers_;
};

} // namespace quorvane
