#pragma once

#include <QDateTime>
#include <QSemaphore>

#include <chrono>
#include <functional>
#include <memory>

namespace quorvane {

using Seconds = std::chrono::duration<double>;

/// A timer that is scheduled as long as this handle lives. Destroying it stops it; that is
/// allowed while its own block runs.
class Timer {
  public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    virtual ~Timer() = default;
};

enum class Repeats { No, Yes };

/// The only source of time. Everything that waits, repeats or stamps a date asks this port, so
/// that a simulated one can let a week pass in milliseconds.
class Clock {
  public:
    virtual ~Clock() = default;

    /// The wall clock, in UTC, to the millisecond. Any thread.
    [[nodiscard]] virtual QDateTime now() const = 0;

    /// Seconds since an arbitrary start; never goes back. Any thread.
    [[nodiscard]] virtual Seconds monotonic() const = 0;

    /// Runs `block` on the main loop after `interval`, once or again and again. Intervals of a
    /// minute and longer may be late by a twentieth, so that the kernel can batch wake-ups.
    /// Main thread only.
    [[nodiscard]] virtual std::unique_ptr<Timer> schedule(Seconds interval, Repeats repeats,
                                                          std::function<void()> block) = 0;

    /// Blocks the calling thread.
    virtual void sleep(Seconds duration) = 0;

    /// Blocks the calling thread until `semaphore` could be taken or `timeout` has passed.
    /// Returns whether it was taken.
    [[nodiscard]] virtual bool wait(QSemaphore& semaphore, Seconds timeout) = 0;
};

} // namespace quorvane
