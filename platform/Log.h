#pragma once

#include <QString>

namespace quorvane {

/// Where log lines go: the system's journal where there is one, else standard error.
class LogSink {
  public:
    virtual ~LogSink() = default;

    /// Writes one line as it stands. Any thread.
    virtual void write(const QString& line) = 0;
};

/// The one way to the system log: writes the exact line to the installed platform's sink. Any
/// thread.
void log(const QString& line);

} // namespace quorvane
