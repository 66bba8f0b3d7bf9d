#pragma once

#include "platform/Log.h"

#include <QStringList>

namespace quorvane::test {

/// Keeps what is logged. One thread only.
class RecordingLog final : public LogSink {
  public:
    void write(const QString& line) override { lines_.append(line); }

    [[nodiscard]] const QStringList& lines() const { return lines_; }

    [[nodiscard]] bool contains(const char* text) const {
        return !lines_.filter(QLatin1String(text)).isEmpty();
    }

  private:
    QStringList lines_;
};

} // namespace quorvane::test
