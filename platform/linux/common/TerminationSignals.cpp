#include "platform/linux/common/TerminationSignals.h"

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace quorvane {

namespace {

sigset_t terminationSignals() {
    sigset_t signals{};
    sigemptyset(&signals);
    for (const int each : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, each);
    }
    return signals;
}

} // namespace

void TerminationSignals::hold() {
    const sigset_t signals = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TerminationSignals::TerminationSignals() {
    const sigset_t signals = terminationSignals();
    descriptor_ = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor_ < 0) {
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
        signalfd_siginfo info{};
        if (::read(descriptor_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
            Q_EMIT received();
        }
    });
}

TerminationSignals::~TerminationSignals() {
    notifier_.reset();
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace quorvane
