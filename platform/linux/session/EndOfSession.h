#pragma once

#include "platform/linux/common/TerminationSignals.h"

#include <QDBusConnection>
#include <QObject>

namespace quorvane {

/// Tells when the program is to end without the user having quit it: SIGTERM, SIGINT, SIGHUP, or a
/// session bus that has gone away. One object a process; main thread only.
class EndOfSession : public QObject {
    Q_OBJECT

  public:
    /// After `TerminationSignals::hold`.
    explicit EndOfSession(const QDBusConnection& sessionBus);

  Q_SIGNALS:
    void ended();

  private Q_SLOTS:

    void busDisconnected() { Q_EMIT ended(); }

  private:
    TerminationSignals signals_;
};

} // namespace quorvane
