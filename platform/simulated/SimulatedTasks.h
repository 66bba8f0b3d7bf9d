#pragma once

#include "platform/Clock.h"
#include "platform/Tasks.h"

#include <QList>
#include <QMap>

#include <optional>

namespace quorvane {

/// Programs that take simulated time. One that nothing is known of ends at once without output.
class SimulatedTasks final : public Tasks {
  public:
    struct Behaviour {
        std::optional<Seconds> duration = Seconds(0.0); ///< nothing: runs for ever
        QByteArray output;
        bool launches = true;
    };

    struct Run {
        QString launchPath;
        QStringList arguments;
        bool terminated = false;
    };

    explicit SimulatedTasks(const Clock& clock) : clock_(clock) {}

    [[nodiscard]] std::unique_ptr<Task> task(const QString& launchPath,
                                             const QStringList& arguments) override;

    void setBehaviour(const QString& launchPath, const Behaviour& behaviour) {
        behaviours_.insert(launchPath, behaviour);
    }

    /// Everything that was launched, oldest first.
    [[nodiscard]] const QList<Run>& runs() const { return runs_; }

  private:
    class Process;

    const Clock& clock_;
    QMap<QString, Behaviour> behaviours_;
    QList<Run> runs_;
};

} // namespace quorvane
