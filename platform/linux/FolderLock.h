#pragma once

#include <QString>

namespace quorvane {

/// Exclusive use of a folder among the processes that ask for it in this way, as long as this
/// object lives. The kernel ends it together with the process, so a crash leaves no lock behind.
class FolderLock {
  public:
    /// Waits up to half a second for a process that has the folder now.
    explicit FolderLock(const QString& folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    [[nodiscard]] bool isHeld() const { return error_.isEmpty(); }

    /// Why it is not held.
    [[nodiscard]] QString error() const { return error_; }

  private:
    void wait();

    int descriptor_;
    QString error_;
};

} // namespace quorvane
