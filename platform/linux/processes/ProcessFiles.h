#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

namespace quorvane {

/// What the kernel tells of one process beside its `ProcessStat`, read anew at each question. Empty
/// what another user's process does not tell, and of one that has ended. Any thread.
class ProcessFiles {
  public:
    explicit ProcessFiles(std::int32_t pid, const QString& procFolder = QStringLiteral("/proc"));

    [[nodiscard]] bool exist() const;

    /// The path of the program that it runs; of one that an update has replaced since, where it
    /// was.
    [[nodiscard]] QString program() const;

    /// The arguments, a zero byte behind each; of a long command line the first ones.
    [[nodiscard]] QByteArray commandLine() const;

    /// The text of /proc/PID/cgroup; `ApplicationUnit` reads it.
    [[nodiscard]] QByteArray controlGroups() const;

    /// The text of /proc/PID/status.
    [[nodiscard]] QByteArray status() const;

  private:
    [[nodiscard]] QByteArray text(const char* name) const;

    QString folder_; ///< with a trailing slash
};

} // namespace quorvane
