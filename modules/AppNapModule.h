#pragma once

#include "core/GridTimer.h"
#include "mode/QuorvaneModule.h"
#include "platform/Workspace.h"

#include <QDateTime>
#include <QHash>

#include <mutex>

namespace quorvane {

/// Hides the applications that the user has not had in front for a while, so that they draw nothing
/// any more. Keeps at all times when each application was last left; other modules ask for that.
class AppNapModule : public QuorvaneModule {
    Q_OBJECT
    Q_PROPERTY(double appNapModuleTimeInterval READ appNapModuleTimeInterval WRITE
                   setAppNapModuleTimeInterval)

  public:
    AppNapModule();

    static AppNapModule& sharedModule();

    void init() override;

    [[nodiscard]] QString label() const override;
    [[nodiscard]] QString imageName() const override;
    bool activate() override;
    bool deactivate() override;

    void didActivateApp(const RunningApplication& application);
    void didDeactivateApp(const RunningApplication& application);

    /// Seconds since the application was last left, or since this module was made when it never
    /// was; 0 without an identifier. Any thread.
    [[nodiscard]] double timeSinceAppInForeground(const QString& bundleIdentifier) const;

    /// When each application was last left, by bundle identifier. Any thread.
    [[nodiscard]] QHash<QString, QDateTime> recentApps() const;

    /// Hides what is due.
    void fireTimer();

    /// Minutes in the background after which an application is hidden.
    [[nodiscard]] double appNapModuleTimeInterval() const { return appNapModuleTimeInterval_; }

    void setAppNapModuleTimeInterval(double minutes);

  private:
    GridTimer timer_; ///< only while the module runs
    QDateTime startDate_;
    mutable std::mutex mutex_;
    QHash<QString, QDateTime> recentApps_; ///< under the mutex
    double appNapModuleTimeInterval_ = 0.0;
};

} // namespace quorvane
