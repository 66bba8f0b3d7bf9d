#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quorvane {

/// Tells when the program is to end without the user having quit it: SIGTERM, SIGINT, SIGHUP, or a
/// session bus that has gone away. One object a process; main thread only.
class EndOfSession : public QObject {
    Q_OBJECT

  public:
    /// Keeps the signals from ending the process by themselves. Before the process has a second
    /// thread: one that has not inherited this would still be ended by them, and the process too.
    static void holdSignals();

    /// After `holdSignals`.
    explicit EndOfSession(const QDBusConnection& sessionBus);
    ~EndOfSession() override;

    EndOfSession(const EndOfSession&) = delete;
    EndOfSession& operator=(const EndOfSession&) = delete;

  Q_SIGNALS:
    void ended();

  private Q_SLOTS:

    void busDisconnected() { Q_EMIT ended(); }

  private:
    void readSignal();

    int descriptor_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace quorvane
