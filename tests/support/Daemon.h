#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace quorvane::test {

/// A service that runs as long as this object lives. Its output goes to a file, because a child
/// that keeps the test's own output open would hold up whoever runs the test.
class Daemon {
  public:
    Daemon() = default;
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;
    ~Daemon();

    /// Starts it with the test's environment and `environment` ("NAME=value") on top. Returns
    /// whether it runs.
    bool start(const QString& program, const QStringList& arguments, const QString& logFile,
               const QStringList& environment = {});

    /// Asks it to end, and kills it when it has not within two seconds.
    void stop();

    /// As a crash: no chance to tidy up.
    void kill();

    [[nodiscard]] qint64 processId() const { return process_.processId(); }

    [[nodiscard]] bool isRunning() const { return process_.state() == QProcess::Running; }

  private:
    QProcess process_;
};

} // namespace quorvane::test
