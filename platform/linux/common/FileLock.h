#pragma once

#include <QFile>
#include <QString>

#include <chrono>

namespace quorvane {

/// An exclusive lock between processes (and between objects of one process), held as long as this
/// object lives. The kernel releases it when its holder dies, however that happens, so a lock is
/// never stale. Any thread.
class FileLock {
  public:
    /// Waits up to `patience` for the lock. The lock file is created where there is none and stays
    /// there: were it removed, two processes could hold a lock on two files of the same name.
    FileLock(const QString& path, std::chrono::milliseconds patience);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    [[nodiscard]] bool isHeld() const { return isHeld_; }

    /// Why it is not held, in words; names the lock file.
    [[nodiscard]] QString error() const { return error_; }

  private:
    QFile file_;
    bool isHeld_ = false;
    QString error_;
};

} // namespace quorvane
