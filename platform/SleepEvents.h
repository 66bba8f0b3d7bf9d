#pragma once

#include <QObject>

namespace quorvane {

/// Tells when the machine sleeps. Main thread only.
class SleepEvents : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

  Q_SIGNALS:
    /// The machine is about to sleep. It waits, for some seconds at most, until every slot has
    /// returned and the helper has answered what they asked of it. Never sent where nobody tells.
    void willSleep();

    /// The machine has woken up again; once after each `willSleep`.
    void didWake();
};

} // namespace quorvane
