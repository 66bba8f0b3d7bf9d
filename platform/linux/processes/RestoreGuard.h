#pragma once

#include "platform/linux/common/JournalWriter.h"

#include <QString>

#include <optional>

namespace quorvane {

/// A process that outlives this one and then runs `quorvane --restore`, unless it is told that
/// nothing is left to put back: for what must not wait for the next start of the program.
///
/// It waits for the end of a connection that only this process holds, which the kernel closes
/// however this process ends. It has a session of its own, and the signals that end a session or
/// come from a terminal do not end it; its own program is among those that are never stopped.
class RestoreGuard {
  public:
    /// `program` takes `argumentOfGuard` and "--restore" as quorvane does. By default it is the
    /// program that runs, also when its file has been replaced by an update.
    explicit RestoreGuard(QString program = QStringLiteral("/proc/self/exe"));

    /// As the end of the process does: the guard puts back, unless it was dismissed.
    ~RestoreGuard();

    RestoreGuard(const RestoreGuard&) = delete;
    RestoreGuard& operator=(const RestoreGuard&) = delete;

    /// Starts the guard unless it stands already. Returns an errno, 0 when it stands.
    [[nodiscard]] int post();

    /// Nothing is left to put back: ends the guard.
    void dismiss();

    /// For the top of main(), before there is anything that takes memory or time. Where this
    /// process was started as the guard, returns the exit status after it was dismissed, or never,
    /// because the process goes on as `quorvane --restore`.
    static std::optional<int> standIfAsked(int argc, char** argv);

  private:
    [[nodiscard]] bool stands() const;
    [[nodiscard]] int start(int guardsEnd);

    QString program_;
    int connection_ = -1;
};

} // namespace quorvane
