#pragma once

#include "platform/linux/common/BusCalls.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

namespace quorvane {

/// Sets the brightness of a display through logind, which lets the user of the session in the
/// foreground do that without being root. Nothing here waits. Main thread only.
class LogindBrightness final : public QObject {
    Q_OBJECT

  public:
    /// Gets why it could not be set, or an empty text when it has been.
    using Done = std::function<void(const QString& error)>;

    explicit LogindBrightness(const QDBusConnection& systemBus);

    /// `done` runs later, from the event loop or from `deliverAnswers`.
    void set(const QString& device, int raw, const Done& done);

    /// Runs the `done` of every answer that has arrived, without an event loop.
    void deliverAnswers() { calls_.deliverAnswers(); }

  Q_SIGNALS:
    /// logind has started.
    void appeared();

  private:
    void askForOtherSession(const QString& device, int raw, const QString& error, const Done& done);

    BusCalls calls_;
    QDBusServiceWatcher watcher_;
};

} // namespace quorvane
