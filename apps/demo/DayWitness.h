#pragma once

#include "apps/demo/DemoEvent.h"

#include <QObject>

namespace quorvane {

class Laptop;
class SimulatedPlatform;
struct UserNotification;

/// Watches the program and the laptop from outside and tells what happens. Main thread only.
class DayWitness : public QObject {
    Q_OBJECT

  public:
    /// From the moment when the program has finished launching.
    DayWitness(SimulatedPlatform& platform, const Laptop& laptop, Report report);
    ~DayWitness() override;

    /// Looks at what announces nothing by itself: the brightness.
    void look();

    /// Tells which files the program has left on the laptop's disk.
    void lookAtFiles() const;

  private:
    void notificationShown(const UserNotification& notification) const;
    void settingsChanged(const QStringList& keys) const;
    void listenToLog();
    void percentRead(int percent);

    SimulatedPlatform& platform_;
    const Laptop& laptop_;
    Report report_;
    long brightness_; // percent, as last told
    bool toldOfThreshold_ = false;
};

} // namespace quorvane
