#pragma once

#include "platform/Clock.h"

namespace quorvane {

/// Time from the kernel, timers on the Qt event loop.
class LinuxClock final : public Clock {
  public:
    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] Seconds monotonic() const override;
    [[nodiscard]] std::unique_ptr<Timer> schedule(Seconds interval, Repeats repeats,
                                                  std::function<void()> block) override;
    void sleep(Seconds duration) override;
    [[nodiscard]] bool wait(QSemaphore& semaphore, Seconds timeout) override;
};

} // namespace quorvane
