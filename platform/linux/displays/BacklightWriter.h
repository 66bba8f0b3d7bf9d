#pragma once

#include "platform/Log.h"
#include "platform/linux/displays/Backlights.h"
#include "platform/linux/displays/LogindBrightness.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>

#include <chrono>
#include <optional>

namespace quorvane {

/// Writes brightnesses to backlight devices without waiting for them: through logind, or into the
/// device's file where logind is not there or refuses. The values of one device are written in the
/// order in which they were asked for; one that waits for its turn is superseded by a later one.
///
/// A value that could be written in neither way is reported in the log, and tried again when logind
/// appears, unless the device has another value by then. Main thread only.
class BacklightWriter final : public QObject {
    Q_OBJECT

  public:
    BacklightWriter(const QDBusConnection& systemBus, LogSink& log, const Backlights& backlights);

    /// `raw` is cut down to the device's range.
    void write(const QString& device, int raw);

    /// The value that the device will have, while writing it is under way.
    [[nodiscard]] std::optional<int> underWay(const QString& device) const;

    /// Whether the value last asked for could not be written.
    [[nodiscard]] bool hasFailed(const QString& device) const;

    /// Waits until nothing is under way, without running the event loop. Returns whether that was
    /// so in time.
    bool waitUntilIdle(std::chrono::milliseconds limit);

  Q_SIGNALS:
    /// Nothing is under way for the device any more. `isWritten`: it has the value last asked for.
    void settled(const QString& device, bool isWritten);

  private:
    struct Failure {
        int raw;                    ///< what could not be written
        std::optional<int> inPlace; ///< what the device had then
    };

    struct Job {
        std::optional<int> sent;
        std::optional<int> next;
        std::optional<Failure> failure;
        QString lastComplaint;
    };

    void send(const QString& device, int raw);
    void answered(const QString& device, const QString& logindError);
    [[nodiscard]] bool writeDirectly(const QString& device, int raw, const QString& logindError);
    void complain(const QString& device, int raw, const QString& logindError, int fileError);
    void tryAgain();
    [[nodiscard]] bool isIdle() const;

    LogSink& log_;
    const Backlights& backlights_;
    LogindBrightness logind_;
    QHash<QString, Job> jobs_; ///< by device
};

} // namespace quorvane
