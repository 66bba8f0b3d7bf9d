#pragma once

#include "platform/Workspace.h"
#include "platform/linux/ApplicationIdentity.h"
#include "platform/linux/ApplicationList.h"
#include "platform/linux/ApplicationTable.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/UnitApplications.h"
#include "platform/linux/X11Session.h"

#include <mutex>

namespace quorvane {

class LogSink;
class RunningCopies;

/// The session's applications: those whose windows the X server of $DISPLAY shows, and those that
/// run in a systemd unit of their own without a window. On Wayland only what uses Xwayland is seen
/// to have windows.
class LinuxWorkspace final : public Workspace {
    Q_OBJECT

  public:
    /// `ownIdentifier` is this program's, `contentsFolder` that of its bundle; all of the bundle's
    /// programs are one application. Both references must outlive this; without `copies` no copy is
    /// seen. Connects to the X server only when the main loop is idle.
    LinuxWorkspace(const RunningCopies* copies, QString ownIdentifier,
                   const QString& contentsFolder, LogSink& log);

    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;
    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;
    [[nodiscard]] int runningCopies(const QString& bundleIdentifier) const override;

    /// Iconifies its ordinary windows.
    void hide(const RunningApplication& application) override;

    /// Asks each of its windows to close; never with a signal.
    void terminate(const RunningApplication& application) override;

    /// Through xdg-open.
    void openURL(const QUrl& url) override;

    /// How many times the X server has woken this program.
    [[nodiscard]] std::uint64_t wakeUps() const { return session_.wakeUps(); }

  private:
    void begin();
    void update();
    void complainAboutBlindness();
    void complain(const QString& address, const QString& reason);
    [[nodiscard]] std::optional<ApplicationIdentity::Found>
    identify(std::int32_t pid, const WindowNames& window) const;

    const RunningCopies* copies_;
    QString ownIdentifier_;
    QByteArray programFolder_; ///< of the bundle, with a trailing slash
    LogSink& log_;
    bool hasComplained_ = false;

    mutable std::mutex mutex_; ///< modules look from threads of their own; guards what follows
    mutable DesktopEntries entries_;
    mutable ApplicationTable table_;
    mutable ApplicationIdentity identity_;
    mutable UnitApplications units_;
    ApplicationList applications_;

    X11Session session_;
    QObject processes_; ///< parent of what is being started
};

} // namespace quorvane
