#pragma once

#include "platform/Log.h"

namespace quorvane {

/// Lines for the systemd journal; where none runs, for standard error.
class LinuxLog final : public LogSink {
  public:
    LinuxLog();
    void write(const QString& line) override;

  private:
    bool hasJournal_;
};

} // namespace quorvane
