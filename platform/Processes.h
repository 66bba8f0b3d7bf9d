#pragma once

#include <cstdint>

namespace quorvane {

/// Stops and resumes the processes of applications. Main thread only.
///
/// A stop reaches the process group with the application's id, and where that group holds
/// strangers, or does not exist, each process of the application's own; nobody else's, and never
/// one that the session cannot do without. Everything that is stopped is first written to the
/// putting-back journal, so that a crash leaves nothing frozen.
class Processes {
  public:
    virtual ~Processes() = default;

    /// Stops the application whose main process is `pid`, until it is resumed. Why one is not
    /// stopped goes to the log.
    virtual void stop(std::int32_t pid) = 0;

    /// Resumes what `stop` has stopped for `pid`, children before their parents. Processes that
    /// have ended meanwhile, and others that have got their ids, are left alone.
    virtual void resume(std::int32_t pid) = 0;
};

} // namespace quorvane
