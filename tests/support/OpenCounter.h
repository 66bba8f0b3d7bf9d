#pragma once

#include <QFile>

#include <array>
#include <cstddef>
#include <cstring>
#include <sys/inotify.h>
#include <unistd.h>

namespace quorvane::test {

/// Counts how often a file is opened, by whatever process.
class OpenCounter {
  public:
    /// Counts from now. The closings are watched too, because the kernel makes one event of equal
    /// ones that follow each other.
    explicit OpenCounter(const QString& path) : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        inotify_add_watch(events_, QFile::encodeName(path).constData(), IN_OPEN | IN_CLOSE);
    }

    ~OpenCounter() { close(events_); }

    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;

    /// How often since the last call. Events of one file have no name and so one size.
    [[nodiscard]] int take() {
        int count = 0;
        std::array<std::byte, sizeof(inotify_event)> one{};
        while (read(events_, one.data(), one.size()) == static_cast<ssize_t>(one.size())) {
            inotify_event event{};
            std::memcpy(&event, one.data(), sizeof event);
            count += (event.mask & IN_OPEN) != 0 ? 1 : 0;
        }
        return count;
    }

  private:
    int events_;
};

} // namespace quorvane::test
