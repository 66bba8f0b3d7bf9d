#include "platform/linux/common/BoundedFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

// Files of the kernel say that they are empty, so it is read until nothing comes any more. In
// steps, because most files are far smaller than their limit.
QByteArray readUpTo(int descriptor, qsizetype limit) {
    constexpr qsizetype step = 4096;
    QByteArray bytes;
    while (bytes.size() < limit) {
        const qsizetype before = bytes.size();
        const qsizetype wanted = std::min(step, limit - before);
        bytes.resize(before + wanted);
        const ssize_t length =
            ::read(descriptor, bytes.data() + before, static_cast<std::size_t>(wanted));
        bytes.resize(before + std::max<ssize_t>(length, 0));
        if (length <= 0 && !(length < 0 && errno == EINTR)) {
            break;
        }
    }
    return bytes;
}

} // namespace

std::optional<QByteArray> readBounded(const QString& path, qsizetype limit) {
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return std::nullopt;
    }

    struct stat status {};

    std::optional<QByteArray> bytes;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        bytes = readUpTo(descriptor, limit);
    }
    ::close(descriptor);
    return bytes;
}

} // namespace quorvane
