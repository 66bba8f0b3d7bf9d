#include "platform/linux/FolderLock.h"

#include <QDeadlineTimer>
#include <QFile>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace quorvane {

namespace {

constexpr std::chrono::milliseconds patience{500};
constexpr std::chrono::milliseconds pause{2};

} // namespace

FolderLock::FolderLock(const QString& folder)
    : descriptor_(
          ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ < 0) {
        error_ = qt_error_string(errno);
    } else {
        wait();
    }
}

void FolderLock::wait() {
    const QDeadlineTimer deadline(patience);
    while (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            error_ = qt_error_string(errno);
            return;
        }
        if (deadline.hasExpired()) {
            error_ = QStringLiteral("another process keeps it locked");
            return;
        }
        std::this_thread::sleep_for(pause);
    }
}

FolderLock::~FolderLock() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace quorvane
