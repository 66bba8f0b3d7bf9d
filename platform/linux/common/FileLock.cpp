#include "platform/linux/common/FileLock.h"

#include <QDeadlineTimer>

#include <cerrno>
#include <sys/file.h>
#include <thread>

namespace quorvane {

namespace {

// There is no flock with a time limit, and one without could wait for a stopped process for ever.
constexpr std::chrono::microseconds betweenAttempts{500};

} // namespace

FileLock::FileLock(const QString& path, std::chrono::milliseconds patience) : file_(path) {
    if (!file_.open(QIODevice::ReadWrite, QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
        error_ =
            QStringLiteral("the lock file %1 cannot be opened (%2)").arg(path, file_.errorString());
        return;
    }
    const QDeadlineTimer deadline(patience);
    while (::flock(file_.handle(), LOCK_EX | LOCK_NB) != 0) {
        const int reason = errno;
        if (reason == EINTR) {
            continue;
        }
        if (reason != EWOULDBLOCK || deadline.hasExpired()) {
            error_ = reason == EWOULDBLOCK
                         ? QStringLiteral("another process holds the lock file %1").arg(path)
                         : QStringLiteral("the lock file %1 cannot be locked (%2)")
                               .arg(path, qt_error_string(reason));
            return;
        }
        std::this_thread::sleep_for(betweenAttempts);
    }
    isHeld_ = true;
}

FileLock::~FileLock() {
    // Closing alone would not do: a child that was just forked may still share the descriptor.
    if (isHeld_) {
        ::flock(file_.handle(), LOCK_UN);
    }
}

} // namespace quorvane
