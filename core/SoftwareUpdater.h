#pragma once

#include "platform/Clock.h"
#include "platform/UpdateService.h"

#include <QObject>

#include <memory>

namespace quorvane {

/// Keeps an eye on newer versions of the program: by itself, quietly, and when the user asks, with
/// a notification that tells the result. Never installs anything. Main thread only.
class SoftwareUpdater : public QObject {
    Q_OBJECT

  public:
    /// The shared instance.
    static SoftwareUpdater& sharedUpdater();

    void setAutomaticallyChecksForUpdates(bool checks);
    void setAutomaticallyDownloadsUpdates(bool downloads);

    /// Above 0. Counts from now.
    void setUpdateCheckInterval(Seconds interval);

    [[nodiscard]] bool automaticallyChecksForUpdates() const { return checks_; }

    [[nodiscard]] bool automaticallyDownloadsUpdates() const { return downloads_; }

    [[nodiscard]] Seconds updateCheckInterval() const { return interval_; }

    void checkForUpdatesInBackground();

    /// The user asks.
    void checkForUpdates();

  private:
    void schedule();

    bool checks_ = false;
    bool downloads_ = false;
    Seconds interval_{86400.0};
    std::unique_ptr<Timer> timer_; ///< only while it checks by itself
};

} // namespace quorvane
