#include "platform/linux/EndOfSession.h"

#include <csignal>
#include <sys/signalfd.h>
#include <unistd.h>

namespace quorvane {

namespace {

sigset_t endingSignals() {
    sigset_t signals{};
    sigemptyset(&signals);
    for (const int each : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, each);
    }
    return signals;
}

} // namespace

void EndOfSession::holdSignals() {
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

EndOfSession::EndOfSession(const QDBusConnection& sessionBus) {
    const sigset_t signals = endingSignals();
    descriptor_ = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor_ >= 0) {
        notifier_ = std::make_unique<QSocketNotifier>(descriptor_, QSocketNotifier::Read);
        connect(notifier_.get(), &QSocketNotifier::activated, this, &EndOfSession::readSignal);
    }
    QDBusConnection(sessionBus)
        .connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                 QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                 SLOT(busDisconnected()));
}

EndOfSession::~EndOfSession() {
    notifier_.reset();
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

void EndOfSession::readSignal() {
    signalfd_siginfo info{};
    if (::read(descriptor_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
        Q_EMIT ended();
    }
}

} // namespace quorvane
