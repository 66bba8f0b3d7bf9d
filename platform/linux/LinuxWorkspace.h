#pragma once

#include "platform/Workspace.h"

namespace quorvane {

class LogSink;
class RunningCopies;

/// The session's applications. Sees only the copies of Quorvane so far, and so no other application
/// is ever paused.
class LinuxWorkspace final : public Workspace {
    Q_OBJECT

  public:
    /// `ownIdentifier` is this program's. Both references must outlive this; without `copies` no
    /// copy is seen.
    LinuxWorkspace(const RunningCopies* copies, QString ownIdentifier, LogSink& log);

    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;
    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;
    [[nodiscard]] int runningCopies(const QString& bundleIdentifier) const override;
    void hide(const RunningApplication& application) override;
    void terminate(const RunningApplication& application) override;

    /// Through xdg-open.
    void openURL(const QUrl& url) override;

  private:
    void complain(const QString& address, const QString& reason);

    const RunningCopies* copies_;
    QString ownIdentifier_;
    LogSink& log_;
    QObject processes_; ///< parent of what is being started
};

} // namespace quorvane
