#pragma once

#include "battery/BatteryHistory.h"
#include "battery/BatteryLog.h"
#include "core/ObservableObject.h"
#include "platform/Clock.h"

#include <QDateTime>
#include <QVariantMap>

#include <cstdint>
#include <memory>
#include <optional>

namespace quorvane {

struct PowerReading;

/// The names of the events that the battery monitor posts.
namespace BatteryEvent {
inline const QString levelDecreased = QStringLiteral("BatteryLevelDecreased");
inline const QString levelIncreased = QStringLiteral("BatteryLevelIncreased");
inline const QString beganCharging = QStringLiteral("BatteryBeganCharging");
inline const QString stoppedCharging = QStringLiteral("BatteryStoppedCharging");
inline const QString logChanged = QStringLiteral("BatteryLogChanged");
} // namespace BatteryEvent

/// A colour in calibrated RGB; each component 0.0 to 1.0.
struct BatteryColor {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;

    bool operator==(const BatteryColor&) const = default;
};

/// The one source of battery state. Takes the readings that the power sources announce, asks for
/// one every 120 seconds, keeps the history, and posts its events; it decides nothing. Main thread
/// only.
class Battery : public ObservableObject {
    Q_OBJECT
    Q_PROPERTY(int batteryPercent READ batteryPercent WRITE setBatteryPercent)
    Q_PROPERTY(
        QVariant batteryPercentNumber READ batteryPercentNumber WRITE setBatteryPercentNumber)
    Q_PROPERTY(quorvane::BatteryColor batteryPercentColor READ batteryPercentColor WRITE
                   setBatteryPercentColor)
    Q_PROPERTY(double batteryTimeRemaining READ batteryTimeRemaining WRITE setBatteryTimeRemaining)
    Q_PROPERTY(QVariant batteryTimeRemainingNumber READ batteryTimeRemainingNumber WRITE
                   setBatteryTimeRemainingNumber)
    Q_PROPERTY(bool batteryCharging READ batteryCharging WRITE setBatteryCharging)
    Q_PROPERTY(
        QDateTime lastIncreaseDecrease READ lastIncreaseDecrease WRITE setLastIncreaseDecrease)
    Q_PROPERTY(QList<int> dataPoints READ dataPoints WRITE setDataPoints)
    Q_PROPERTY(QList<QDateTime> dataTimes READ dataTimes WRITE setDataTimes)
    Q_PROPERTY(QString dataPath READ dataPath CONSTANT)
    Q_PROPERTY(QString logPath READ logPath CONSTANT)

  public:
    Battery();
    ~Battery() override;

    /// The shared instance.
    static Battery& battery();

    /// Reads the power sources and updates the properties; posts nothing.
    void pollBattery();

    /// Polls, records one sample and posts the events that apply, "BatteryLogChanged" always and
    /// last.
    void sendBatteryNotifications();

    /// The charge, 0.0 to 1.0, of the first power source that is present; 0.0 without one.
    [[nodiscard]] static double getBatteryLevel();

    /// The same in percent, halves rounded away from zero.
    [[nodiscard]] static int getBatteryPercent();

    /// Seconds; -1.0 unknown, -2.0 on external power.
    [[nodiscard]] static double getBatteryTimeRemaining();

    /// Further facts about the battery, or nothing when they cannot be had.
    [[nodiscard]] static std::optional<QVariantMap> getAdvancedBatteryInfo();

    /// On battery, with the charge at or below the stored threshold.
    [[nodiscard]] bool beneathQuorvaneThreshhold() const;

    /// See `BatteryLog::write`.
    void writeToLog(const QString& message);

    /// See `BatteryHistory`.
    bool readData();
    bool saveData();
    [[nodiscard]] std::size_t findDate(const QDateTime& date) const;
    [[nodiscard]] std::int32_t percentAtTime(const QDateTime& date) const;

    /// Percent, 0 to 100, at the last poll.
    [[nodiscard]] int batteryPercent() const { return batteryPercent_; }

    [[nodiscard]] QVariant batteryPercentNumber() const { return batteryPercentNumber_; }

    /// Red at 50 percent and below, green above.
    [[nodiscard]] BatteryColor batteryPercentColor() const { return batteryPercentColor_; }

    /// Seconds; -1.0 unknown, -2.0 on external power.
    [[nodiscard]] double batteryTimeRemaining() const { return batteryTimeRemaining_; }

    [[nodiscard]] QVariant batteryTimeRemainingNumber() const {
        return batteryTimeRemainingNumber_;
    }

    /// On external power, whether or not the cell takes charge.
    [[nodiscard]] bool batteryCharging() const { return batteryCharging_; }

    /// When the percentage last changed; invalid until it does for the first time.
    [[nodiscard]] QDateTime lastIncreaseDecrease() const { return lastIncreaseDecrease_; }

    [[nodiscard]] QList<int> dataPoints() const { return history_.dataPoints(); }

    [[nodiscard]] QList<QDateTime> dataTimes() const { return history_.dataTimes(); }

    [[nodiscard]] QString dataPath() const { return history_.path(); }

    [[nodiscard]] QString logPath() const { return log_.path(); }

    void setBatteryPercent(int percent);
    void setBatteryPercentNumber(const QVariant& percent);
    void setBatteryPercentColor(const BatteryColor& color);
    void setBatteryTimeRemaining(double seconds);
    void setBatteryTimeRemainingNumber(const QVariant& seconds);
    void setBatteryCharging(bool charging);
    void setLastIncreaseDecrease(const QDateTime& time);
    void setDataPoints(const QList<int>& points);
    void setDataTimes(const QList<QDateTime>& times);

  private:
    void take(const PowerReading& reading);
    void answer(const PowerReading& reading);
    void recordSample();
    void noteChange(int newPercent);
    void postEvents(int oldPercent, double oldEstimate);

    BatteryHistory history_;
    BatteryLog log_;
    int batteryPercent_ = 0;
    QVariant batteryPercentNumber_;
    BatteryColor batteryPercentColor_;
    double batteryTimeRemaining_ = 0.0;
    QVariant batteryTimeRemainingNumber_;
    bool batteryCharging_ = false;
    QDateTime lastIncreaseDecrease_;
    float ratePerMinute_ = 0.0F; // percent; nobody reads it
    std::unique_ptr<Timer> timer_;
};

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::BatteryColor)
