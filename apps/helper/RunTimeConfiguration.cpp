#include "apps/helper/RunTimeConfiguration.h"

#include <QFile>

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <systemd/sd-login.h>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

/// The first byte of what a descriptor opened with O_PATH stands for.
std::optional<char> firstByte(int place) {
    const QByteArray name = "/proc/self/fd/" + QByteArray::number(place);
    const int file = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        return std::nullopt;
    }
    char byte = 0;
    const bool isRead = ::read(file, &byte, 1) == 1;
    ::close(file);
    return isRead ? std::optional(byte) : std::nullopt;
}

} // namespace

RunTimeConfiguration::RunTimeConfiguration(QString path, Users users)
    : path_(std::move(path)), users_(std::move(users)) {
    constexpr std::chrono::milliseconds settlingTime{50};
    settling_.setSingleShot(true);
    settling_.setInterval(settlingTime);
    connect(&settling_, &QTimer::timeout, this, [this] { Q_EMIT said(read()); });
}

void RunTimeConfiguration::start() {
    if (watch_) {
        return;
    }
    watch_ = std::make_unique<FileWatch>(path_, FileWatch::Links::NotFollowed);
    connect(watch_.get(), &FileWatch::touched, this, [this] {
        if (!settling_.isActive()) {
            settling_.start();
        }
    });
    Q_EMIT said(read());
}

void RunTimeConfiguration::stop() {
    watch_.reset();
    settling_.stop();
}

// What it is is found out before it is opened: opening a pipe or a device has effects of its own.
std::optional<char> RunTimeConfiguration::read() const {
    const int place = ::open(QFile::encodeName(path_).constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    if (place < 0) {
        return std::nullopt;
    }

    struct stat status {};

    std::optional<char> byte;
    if (::fstat(place, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 1 &&
        users_().contains(status.st_uid)) {
        byte = firstByte(place);
    }
    ::close(place);
    const bool isSetting = byte && (*byte == '0' || *byte == '1');
    return isSetting ? byte : std::nullopt;
}

std::set<uid_t> usersInFront() {
    std::set<uid_t> users;
    char** seats = nullptr;
    if (::sd_get_seats(&seats) <= 0) {
        return users;
    }
    for (char** seat = seats; *seat != nullptr; ++seat) {
        uid_t user = 0;
        if (::sd_seat_get_active(*seat, nullptr, &user) >= 0) {
            users.insert(user);
        }
        std::free(*seat); // NOLINT(cppcoreguidelines-no-malloc): the library's own
    }
    std::free(seats); // NOLINT(cppcoreguidelines-no-malloc)
    return users;
}

} // namespace quorvane
