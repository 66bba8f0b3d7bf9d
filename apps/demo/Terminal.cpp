#include "apps/demo/Terminal.h"

#include <array>
#include <cerrno>
#include <initializer_list>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace quorvane {

namespace {

sigset_t signalSet(std::initializer_list<int> signals) {
    sigset_t set{};
    sigemptyset(&set);
    for (const int each : signals) {
        sigaddset(&set, each);
    }
    return set;
}

} // namespace

Terminal::Terminal() {
    const sigset_t ours = signalSet({SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP, SIGWINCH});
    sigprocmask(SIG_BLOCK, &ours, &oldMask_);
    signals_ = signalfd(-1, &ours, SFD_CLOEXEC | SFD_NONBLOCK);
    hasKeyboard_ = isatty(STDIN_FILENO) == 1 && tcgetattr(STDIN_FILENO, &oldModes_) == 0;
    hearsKeys_ = hasKeyboard_;
    takeOver();
}

Terminal::~Terminal() {
    giveBack();
    close(signals_);
    sigprocmask(SIG_SETMASK, &oldMask_, nullptr);
}

void Terminal::takeOver() {
    if (hasKeyboard_) {
        termios modes = oldModes_;
        modes.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &modes);
    }
    write("\x1b[?1049h\x1b[?25l");
}

void Terminal::giveBack() const {
    write("\x1b[0m\x1b[?25h\x1b[?1049l");
    if (hasKeyboard_) {
        tcsetattr(STDIN_FILENO, TCSANOW, &oldModes_);
    }
}

void Terminal::write(const QByteArray& bytes) const {
    const char* next = bytes.constData();
    auto left = static_cast<std::size_t>(bytes.size());
    while (left > 0) {
        const ssize_t written = ::write(STDOUT_FILENO, next, left);
        if (written < 0 && errno != EINTR) {
            return; // the terminal is gone; SIGHUP tells
        }
        if (written > 0) {
            next += written;
            left -= static_cast<std::size_t>(written);
        }
    }
}

Terminal::Happening Terminal::wait(int milliseconds) {
    std::array sources{pollfd{signals_, POLLIN, 0}, pollfd{STDIN_FILENO, POLLIN, 0}};
    if (poll(sources.data(), hearsKeys_ ? 2 : 1, milliseconds) <= 0) {
        return Happening::Nothing;
    }
    if (sources[0].revents != 0) {
        return readSignal();
    }
    return readKey();
}

Terminal::Happening Terminal::readSignal() {
    signalfd_siginfo information{};
    if (read(signals_, &information, sizeof information) != sizeof information) {
        return Happening::Nothing;
    }
    switch (information.ssi_signo) {
    case SIGWINCH:
        return Happening::Resized;
    case SIGTSTP:
        stop();
        return Happening::Resized;
    default:
        signal_ = static_cast<int>(information.ssi_signo);
        return Happening::Terminated;
    }
}

Terminal::Happening Terminal::readKey() {
    char key = 0;
    const ssize_t count = read(STDIN_FILENO, &key, 1);
    if (count != 1) {
        hearsKeys_ = false; // no more will come
    }
    return count == 1 && (key == 'q' || key == 'Q') ? Happening::Left : Happening::Nothing;
}

void Terminal::stop() {
    giveBack();
    raise(SIGSTOP); // returns when the user brings the program back to the front
    takeOver();
}

} // namespace quorvane
