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
    /// Takes the signals over from here on; they no longer end the process by themselves.
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
