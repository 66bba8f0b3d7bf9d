#pragma once

#include "core/BlockTimers.h"

namespace quorvane {

/// A repeating timer that can be switched off while it has nothing to do, so that it wakes nobody,
/// and fires as if it had run all the time: at whole periods since it was made. Main thread only.
class GridTimer {
  public:
    /// Switched off. `period` above 0.
    GridTimer(Seconds period, std::function<void()> block);

    void start();
    void stop();

  private:
    Seconds period_;
    std::function<void()> block_;
    Seconds made_;
    std::unique_ptr<BlockTimer> timer_;
};

} // namespace quorvane
