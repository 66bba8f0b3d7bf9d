#pragma once

#include "platform/Log.h"

namespace quorvane {

/// Lines for the systemd journal; where none runs, for standard error.
class LinuxLog final : public LogSink {
  public:
    /// `identifier` is the name that the journal shows the lines under.
    explicit LinuxLog(const char* identifier = "quorvane");
    void write(const QString& line) override;

  private:
    const char* identifier_;
    bool hasJournal_;
};

} // namespace quorvane
