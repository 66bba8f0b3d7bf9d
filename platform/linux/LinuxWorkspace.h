#pragma once

#include "platform/Workspace.h"

#include <QObject>

namespace quorvane {

class LogSink;
class RunningCopies;

/// The session's applications. Sees only the copies of Quorvane so far, and so no other application
/// is ever paused.
class LinuxWorkspace final : public Workspace {
  public:
    /// `ownIdentifier` is this program's. Both references must outlive this; without `copies` no
    /// copy is seen.
    LinuxWorkspace(const RunningCopies* copies, QString ownIdentifier, LogSink& log);

    [[nodiscard]] std::optional<std::int32_t>
    processIdentifierOf(const QString& bundleIdentifier) const override;

    [[nodiscard]] int
    runningApplicationsWithBundleIdentifier(const QString& bundleIdentifier) const override;

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
