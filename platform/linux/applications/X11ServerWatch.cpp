#include "platform/linux/applications/X11ServerWatch.h"

#include <chrono>

namespace quorvane {

namespace {

// A server listens a moment after it has made its socket. Each pause is twice as long as the one
// before: about 13 seconds in all.
constexpr std::chrono::milliseconds firstPause{100};
constexpr int mostAttempts = 7;

} // namespace

X11ServerWatch::X11ServerWatch(const QString& socketPath) : socket_(socketPath) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &X11ServerWatch::attempt);
    connect(&socket_, &FileWatch::touched, this, &X11ServerWatch::begin);
    begin();
}

void X11ServerWatch::begin() {
    attempts_ = 0;
    timer_.start(firstPause);
}

void X11ServerWatch::attempt() {
    if (++attempts_ < mostAttempts) {
        timer_.start(firstPause * (1 << attempts_));
    }
    Q_EMIT worthATry(); // may be the end of this object
}

} // namespace quorvane
