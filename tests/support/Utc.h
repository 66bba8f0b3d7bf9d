#pragma once

#include <QDateTime>
#include <QTimeZone>

namespace quorvane::test {

/// The moment that this is in UTC; its `timeSpec` is Qt::UTC with every Qt. (The constructor that
/// takes a Qt::TimeSpec is deprecated since Qt 6.9.)
inline QDateTime utc(const QDate& date, const QTime& time) {
    return QDateTime(date, time, QTimeZone::utc()).toUTC();
}

} // namespace quorvane::test
