#pragma once

#include <QHash>
#include <QString>

namespace quorvane {

/// How many commands may be under way: a caller that asks faster than answers come is refused, and
/// takes neither memory nor other callers' turns. Main thread only.
class CallLimits {
  public:
    static constexpr int perCaller = 8;
    static constexpr int total = 64;

    /// False when there are too many; nothing is to be released then.
    [[nodiscard]] bool take(const QString& caller);
    void release(const QString& caller);

    [[nodiscard]] bool isEmpty() const { return all_ == 0; }

  private:
    QHash<QString, int> callers_; ///< none with 0
    int all_ = 0;
};

} // namespace quorvane
