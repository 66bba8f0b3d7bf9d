#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace quorvane {

/// How many commands the helper has not answered yet, over all sessions with it. Any thread.
class CallsUnderWay {
  public:
    /// `becameIdle` runs on the thread that ended the last one.
    explicit CallsUnderWay(std::function<void()> becameIdle);

    void began();
    void ended(int count = 1);

    [[nodiscard]] bool isIdle() const;

    /// Blocks until there is none, or the limit is reached. Returns whether there is none.
    [[nodiscard]] bool waitUntilIdle(std::chrono::milliseconds limit) const;

  private:
    std::function<void()> becameIdle_;
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    int count_ = 0; ///< under the mutex
};

} // namespace quorvane
