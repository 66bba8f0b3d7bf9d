#pragma once

#include "platform/Workspace.h"

#include <QList>

#include <mutex>

namespace quorvane {

/// The applications of a laptop in memory, with a user who starts, switches and quits them.
class SimulatedWorkspace final : public Workspace {
    Q_OBJECT

  public:
    [[nodiscard]] std::vector<RunningApplication> runningApplications() const override;
    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;

    [[nodiscard]] Result<Done> tellsFront() const override { return Done(); }

    [[nodiscard]] Result<Done> canHide() const override { return Done(); }

    void hide(const RunningApplication& application) override;
    void terminate(const RunningApplication& application) override;

    // What the user does.

    /// The application starts in the background.
    void run(const QString& bundleIdentifier, std::int32_t pid,
             ActivationPolicy policy = ActivationPolicy::Regular);

    /// Brings the application with this main process to the front; with 0, none.
    void activate(std::int32_t pid);

    /// The application ends; if it was in front, none is then.
    void quit(std::int32_t pid);

    // What came of it.

    /// The identifiers of what was hidden, in order, each as often as it was told to.
    [[nodiscard]] const QStringList& hidden() const { return hidden_; }

    void forgetHidden() { hidden_.clear(); }

    [[nodiscard]] const QList<std::int32_t>& terminated() const { return terminated_; }

  private:
    mutable std::mutex mutex_; ///< modules look from threads of their own
    std::vector<RunningApplication> applications_;
    QStringList hidden_;
    QList<std::int32_t> terminated_;
};

} // namespace quorvane
