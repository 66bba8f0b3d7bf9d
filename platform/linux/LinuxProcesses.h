#pragma once

#include "platform/Log.h"
#include "platform/Processes.h"
#include "platform/linux/PuttingBackJournal.h"

namespace quorvane {

/// The processes of the user's applications.
class LinuxProcesses final : public Processes {
  public:
    /// Both have to outlive this.
    LinuxProcesses(PuttingBackJournal& journal, LogSink& log);

    void stop(std::int32_t pid) override;
    void resume(std::int32_t pid) override;

    /// Resumes whatever the journal names that this process or a dead one has stopped.
    void putBack();

  private:
    PuttingBackJournal& journal_;
    LogSink& log_;
};

} // namespace quorvane
