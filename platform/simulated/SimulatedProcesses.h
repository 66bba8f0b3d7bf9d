#pragma once

#include "platform/Processes.h"

#include <QStringList>

#include <set>

namespace quorvane {

/// The processes of a laptop in memory: who is stopped, and every signal that was sent.
class SimulatedProcesses final : public Processes {
  public:
    void stop(std::int32_t pid) override {
        signals_.append(QStringLiteral("-STOP -%1").arg(pid));
        stopped_.insert(pid);
    }

    void resume(std::int32_t pid) override {
        signals_.append(QStringLiteral("-CONT -%1").arg(pid));
        stopped_.erase(pid);
    }

    /// The process ends, stopped or not.
    void end(std::int32_t pid) { stopped_.erase(pid); }

    [[nodiscard]] const std::set<std::int32_t>& stopped() const { return stopped_; }

    /// As arguments of kill, for example "-STOP -1234", in the order in which they were sent.
    [[nodiscard]] const QStringList& sentSignals() const { return signals_; }

    void forgetSignals() { signals_.clear(); }

  private:
    std::set<std::int32_t> stopped_;
    QStringList signals_;
};

} // namespace quorvane
