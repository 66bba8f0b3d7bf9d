#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <cstdint>

namespace quorvane {

/// The charge over time: percentages and when each was read, oldest first, two lists in step. Grows
/// without limit in memory; a file keeps the last six hours from one run to the next. Main thread
/// only.
class BatteryHistory {
  public:
    explicit BatteryHistory(QString path);

    void append(int percent, const QDateTime& time);

    /// Appends what the file holds. Returns false, with the lists as they are, when there is no
    /// property list with a dictionary in it.
    bool readData();

    /// Stores the last six hours as seen from `now`, and the sample before them in exchange for the
    /// newest one. A file that `readData` could not make sense of is kept aside first. Returns
    /// whether the file was written.
    bool saveData(const QDateTime& now);

    /// How many samples are earlier than `date`: where it would have to be inserted.
    [[nodiscard]] std::size_t findDate(const QDateTime& date) const;

    /// The percentage of the first sample at or after `date`, else of the last one. Not to be asked
    /// of an empty history.
    [[nodiscard]] std::int32_t percentAtTime(const QDateTime& date) const;

    [[nodiscard]] const QList<int>& dataPoints() const { return dataPoints_; }

    [[nodiscard]] const QList<QDateTime>& dataTimes() const { return dataTimes_; }

    [[nodiscard]] const QString& path() const { return path_; }

    void setDataPoints(const QList<int>& points) { dataPoints_ = points; }

    void setDataTimes(const QList<QDateTime>& times) { dataTimes_ = times; }

  private:
    QString path_;
    QList<int> dataPoints_;
    QList<QDateTime> dataTimes_;
    bool fileMakesNoSense_ = false;
};

} // namespace quorvane
