#pragma once

#include "core/GridTimer.h"
#include "core/ObservableObject.h"
#include "mode/QuorvaneModule.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace quorvane {

class NotificationController;

/// What the mode does when the charge reaches the threshold.
enum class LaunchMode : quint64 {
    Automatic = 0, ///< start at once, and say so
    Ask = 1,       ///< ask the user
    Manual = 2     ///< nothing; nor does plugging in stop the mode
};

/// The controller of Low Power Mode: keeps its state and the setting "QuorvaneActive" the same,
/// decides when it starts, switches the modules and counts the minutes that it saves. Main thread
/// only.
class BatterySaver : public ObservableObject {
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled)
    Q_PROPERTY(float minutesSaved READ minutesSaved)
    Q_PROPERTY(int batteryThreshhold READ batteryThreshhold WRITE setBatteryThreshhold)
    Q_PROPERTY(quint64 launchMode READ launchMode WRITE setLaunchMode)

  public:
    BatterySaver();
    ~BatterySaver() override;

    /// The shared instance.
    static BatterySaver& batterySaver();

    /// Null when there is no module of that identifier.
    [[nodiscard]] QuorvaneModule* moduleWithIdentifier(const QString& identifier) const;

    static void toggleModule(QuorvaneModule& module);

    /// Toggles the Turbo module, whatever its name says.
    void enableTurboModule();

    /// What the mode is to be at start: asked for or started beneath the threshold, on again in
    /// manual mode when it was on at the last quit, else off.
    void checkThreshold();

    /// The charge has reached the threshold: starts or asks, by the launch mode.
    void askToEnablePowerSaving();

    /// Suggests the Turbo module while the mode is on without it.
    void askToEnableTurboModule();

    /// Tells every module, in order, whether the mode is on.
    void updateModules();

    void enableWithNotification(bool show);
    void disableWithNotification(bool alwaysShow);

    [[nodiscard]] bool enabled() const { return enabled_; }

    void setEnabled(bool enabled);
    void toggleEnabled();

    /// Remembers whether the mode is on, ends it and has the battery history stored.
    void quit();

    /// Minutes of battery that one minute of the mode saves, by the modules' settings: 0 to 1.4.
    [[nodiscard]] float estimationForOneMinute() const;

    /// The whole minutes saved since the last reset.
    std::int32_t resetMinutesSaved();
    void updateMinutesSaved();

    [[nodiscard]] float minutesSaved() const { return minutesSaved_; }

    [[nodiscard]] NotificationController& notifier() const { return *notifier_; }

    [[nodiscard]] const ModuleList& modules() const { return modules_; }

    /// Null while there is no such module.
    [[nodiscard]] QuorvaneModule* turboModule() const { return turboModule_; }

    /// A value of `LaunchMode`, or whatever number stands in the settings: that counts as asking.
    [[nodiscard]] quint64 launchMode() const { return launchMode_; }

    [[nodiscard]] bool isLaunchMode(LaunchMode mode) const {
        return launchMode_ == static_cast<quint64>(mode);
    }

    void setLaunchMode(quint64 mode);

    /// Percent.
    [[nodiscard]] int batteryThreshhold() const { return batteryThreshhold_; }

    void setBatteryThreshhold(int percent);

  private:
    void bindSettings();
    [[nodiscard]] bool isModuleOn(QLatin1String setting) const;
    void announceEnabled(bool enabled);

    bool enabled_ = false;
    float minutesSaved_ = 0.0F;
    int batteryThreshhold_ = 0;
    quint64 launchMode_ = 0;
    std::unique_ptr<NotificationController> notifier_;
    ModuleList modules_;
    QuorvaneModule* turboModule_ = nullptr;
    GridTimer savingsTimer_; ///< only while the mode is on
};

/// Where the controller gets its modules from: the application says so before the controller is
/// made. Without anything the mode switches nothing.
struct ModuleFactory {
    std::function<ModuleList()> makeModules;
};

} // namespace quorvane
