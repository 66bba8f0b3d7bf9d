#pragma once

#include "platform/Workspace.h"
#include "platform/linux/applications/ApplicationIdentity.h"
#include "platform/linux/applications/ApplicationList.h"
#include "platform/linux/applications/ApplicationTable.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/applications/UnitApplications.h"
#include "platform/linux/applications/WindowList.h"

#include <memory>
#include <mutex>

namespace quorvane {

class LogSink;

/// The session's applications: those whose windows the display server tells of, and those that run
/// in a systemd unit of their own without a window.
class LinuxWorkspace final : public Workspace {
    Q_OBJECT

  public:
    /// Where it looks for what it does not learn from windows; a test has places of its own.
    struct Places {
        QString contentsFolder;                                           ///< of the bundle
        QString unitsFolder = UnitApplications::folderOfTheSession();     ///< control groups
        QStringList entryFolders = DesktopEntries::foldersOfTheSession(); ///< first one first
        QString userTable = ApplicationTable::userFileOfTheSession();
    };

    /// `ownIdentifier` is this program's; all of the bundle's programs are one application. `log`
    /// must outlive this. Opens the windows' list only when the main loop is idle.
    LinuxWorkspace(std::unique_ptr<WindowList> windows, QString ownIdentifier, const Places& places,
                   LogSink& log);

    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;
    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;

    [[nodiscard]] Result<Done> tellsFront() const override { return windows_->tellsFront(); }

    [[nodiscard]] Result<Done> canHide() const override { return windows_->canHide(); }

    /// Its ordinary windows.
    void hide(const RunningApplication& application) override;

    /// Asks each of its windows to close; never with a signal.
    void terminate(const RunningApplication& application) override;

  private:
    void begin();
    void update();
    void complainAboutBlindness(const QString& why);
    [[nodiscard]] ApplicationIdentity::Found identifyByWindow(const WindowNames& window) const;
    [[nodiscard]] std::optional<ApplicationIdentity::Found>
    identify(std::int32_t pid, const WindowNames& window) const;

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

    std::unique_ptr<WindowList> windows_;
};

} // namespace quorvane
