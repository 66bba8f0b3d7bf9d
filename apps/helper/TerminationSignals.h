#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quorvane {

/// SIGTERM and SIGINT as an event of the main loop.
class TerminationSignals final : public QObject {
    Q_OBJECT

  public:
    /// Keeps the signals from ending the program. Before any thread is started.
    static void hold();

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
