#pragma once

#include "core/BackgroundTimer.h"
#include "mode/QuorvaneModule.h"

#include <QStringList>

#include <atomic>
#include <mutex>

namespace quorvane {

/// Stops the web browsers that the user is not looking at, and lets one go on as soon as it is
/// brought to the front.
///
/// The looks at the applications run on threads of their own; everything else on the main thread.
class BrowserModule : public QuorvaneModule {
    Q_OBJECT
    Q_PROPERTY(bool controlSafari READ controlSafari WRITE setControlSafari)
    Q_PROPERTY(bool controlChrome READ controlChrome WRITE setControlChrome)
    Q_PROPERTY(bool controlFirefox READ controlFirefox WRITE setControlFirefox)
    Q_PROPERTY(bool controlOpera READ controlOpera WRITE setControlOpera)

  public:
    BrowserModule();

    void init() override;

    [[nodiscard]] QString label() const override;
    bool activate() override;
    bool deactivate() override;
    void didChangeValueForKey(const QString& key) override;

    /// Stops each chosen browser that runs, is not active and is not stopped by this module yet.
    /// Any thread.
    void pauseBrowsers();

    /// The same for the applications with this bundle identifier.
    void pauseAppsWithBundleID(const QString& bundleIdentifier);

    /// Resumes everything that this module has stopped.
    void unpauseBrowsers();

    /// Resumes the application in front, if this module has stopped it. Any thread.
    void unpauseFrontApp();

    /// Waits for looks that are under way.
    void waitForLooks();

    /// The main processes that this module has stopped and not resumed yet.
    [[nodiscard]] std::vector<std::int32_t> pausedApps() const;

    [[nodiscard]] bool controlSafari() const { return controlSafari_; }

    [[nodiscard]] bool controlChrome() const { return controlChrome_; }

    [[nodiscard]] bool controlFirefox() const { return controlFirefox_; }

    /// Kept for its users' sake; no such browser is ever stopped.
    [[nodiscard]] bool controlOpera() const { return controlOpera_; }

    void setControlSafari(bool control);
    void setControlChrome(bool control);
    void setControlFirefox(bool control);
    void setControlOpera(bool control);

  private:
    void pause(std::int32_t pid);
    void setControl(std::atomic<bool>& field, bool control, const QString& key);
    [[nodiscard]] QStringList chosenBrowsers() const;
    void watchTheFront();

    std::atomic<bool> controlSafari_ = false;
    std::atomic<bool> controlChrome_ = false;
    std::atomic<bool> controlFirefox_ = false;
    std::atomic<bool> controlOpera_ = false;
    std::atomic<bool> isActive_ = false; ///< between activation and deactivation
    mutable std::mutex mutex_;
    std::vector<std::int32_t> pausedApps_; ///< under the mutex
    BackgroundTimer timer_;                ///< looks at the front; only while something is stopped
    BackgroundTimer timer2_;               ///< looks for browsers to stop
};

} // namespace quorvane
