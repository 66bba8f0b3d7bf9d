#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quorvane {

/// SIGTERM, SIGINT and SIGHUP as an event of the main loop. One object a process; main thread only.
class TerminationSignals final : public QObject {
    Q_OBJECT

  public:
    /// Keeps the signals from ending the process by themselves. Before the process has a second
    /// thread: one that has not inherited this would still be ended by them, and the process too.
    static void hold();

    /// After `hold`.
    TerminationSignals();
    ~TerminationSignals() override;
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

  Q_SIGNALS:
    void received();

  private:
    int descriptor_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace quorvane
