#pragma once

#include <QString>

namespace quorvane {

/// The text log that tells when power saving went on and off: a header line and a line an entry,
/// UTF-16 with a byte-order mark, rewritten whole at every entry. Main thread only.
class BatteryLog {
  public:
    explicit BatteryLog(QString path);

    /// Appends one entry. The folder is not created: until it exists, entries are lost silently. A
    /// log that cannot be read is kept aside and a new one begun.
    void write(const QString& message);

    [[nodiscard]] const QString& path() const { return path_; }

  private:
    QString path_;
};

} // namespace quorvane
