#pragma once

#include "platform/Log.h"

#include <QStringList>

#include <functional>
#include <mutex>
#include <utility>

namespace quorvane {

/// Keeps the lines, and hands each to a listener where there is one.
class SimulatedLog final : public LogSink {
  public:
    using Listener = std::function<void(const QString& line)>;

    void write(const QString& line) override {
        const std::lock_guard lock(mutex_);
        lines_.append(line);
        if (listener_) {
            listener_(line);
        }
    }

    [[nodiscard]] QStringList lines() const {
        const std::lock_guard lock(mutex_);
        return lines_;
    }

    /// How many lines are exactly this one.
    [[nodiscard]] qsizetype count(const QString& line) const { return lines().count(line); }

    void setListener(Listener listener) {
        const std::lock_guard lock(mutex_);
        listener_ = std::move(listener);
    }

  private:
    mutable std::mutex mutex_;
    QStringList lines_;
    Listener listener_;
};

} // namespace quorvane
