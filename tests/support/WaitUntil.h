#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <chrono>
#include <thread>

namespace quorvane::test {

/// Runs the event loop until `condition` holds. Returns whether it came to hold in time.
template <class Condition>
[[nodiscard]] bool waitUntil(Condition condition,
                             std::chrono::milliseconds limit = std::chrono::seconds(10)) {
    const QDeadlineTimer deadline(limit);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

} // namespace quorvane::test
