#pragma once

#include "apps/demo/DayPlan.h"
#include "apps/demo/DemoEvent.h"
#include "apps/demo/Laptop.h"
#include "battery/Battery.h"
#include "platform/Clock.h"
#include "platform/UserNotifications.h"

#include <QDateTime>

#include <memory>
#include <optional>

namespace quorvane {

class AppDelegate;
class DayWitness;
class DemoUser;
class SimulatedPlatform;

/// What one sees when one looks at the laptop and at the program.
struct DayState {
    QDateTime time;
    DayPlan plan;
    int percent = 0;           ///< as the battery monitor tells it
    BatteryColor percentColor; ///< the same
    bool pluggedIn = true;
    double brightness = 1.0;                      ///< of the screen, 0.0 to 1.0
    double watts = 0.0;                           ///< drawn by the simulated laptop
    double secondsLeft = 0.0;                     ///< as the battery monitor tells it, see there
    bool modeOn = false;                          ///< Low Power Mode
    double minutesSaved = 0.0;                    ///< since the mode began, as the program counts
    std::optional<UserNotification> notification; ///< the newest one on the screen
    QString pointedButton;                        ///< that the user is about to click
};

/// What came out in the end.
struct DayResult {
    bool modeWasOn = false;
    QString lastNotice; ///< the title of the last notification without buttons, or empty
    std::optional<Discharge> discharge;
};

/// A day of the simulated laptop, from nine to five, on which the program runs as on a real one.
/// Only the hardware and the user are played. There is one day at a time, because the program's
/// shared instances are; they end with it. Main thread only, with an application object.
class Day {
  public:
    Day(const DayPlan& plan, EventSink sink);
    ~Day();

    Day(const Day&) = delete;
    Day& operator=(const Day&) = delete;

    /// Starts the program. Events go to the sink from here on.
    void begin();

    /// Lets time pass, until the program has quit.
    void advance(Seconds duration);

    /// Lets the rest of the day pass.
    void finish();

    /// Whether the user has quit the program.
    [[nodiscard]] bool isOver() const { return over_; }

    [[nodiscard]] DayState state() const;

    [[nodiscard]] bool showsNotification() const;

    [[nodiscard]] DayResult result() const;

    /// The laptop that the program runs on.
    [[nodiscard]] SimulatedPlatform& platform() const { return *platform_; }

  private:
    void storeSettings() const;
    void storeYesterdaysLog() const;
    void report(DemoEvent::Kind kind, const QString& text);
    void quit();

    DayPlan plan_;
    EventSink sink_;
    SimulatedPlatform* platform_ = nullptr; // lives with the shared instances
    std::unique_ptr<Laptop> laptop_;
    std::unique_ptr<AppDelegate> program_;
    std::unique_ptr<DayWitness> witness_;
    std::unique_ptr<DemoUser> user_;
    bool modeWasOn_ = false;
    QString lastNotice_;
    bool over_ = false;
};

} // namespace quorvane
