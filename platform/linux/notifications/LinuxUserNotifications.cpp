#include "platform/linux/notifications/LinuxUserNotifications.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QMetaObject>
#include <QThread>
#include <QUuid>

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {

using State = DeliveredNotification::State;

LinuxUserNotifications::LinuxUserNotifications(const QDBusConnection& sessionBus, LogSink& log,
                                               const NotificationTiming& timing)
    : log_(log), server_(sessionBus, timing.patience), delivered_(timing.lateAction) {
    overdue_.setSingleShot(true);
    overdue_.setInterval(timing.patience);
    connect(&overdue_, &QTimer::timeout, this,
            [this] { reportOutage(QStringLiteral("no reply in time")); });

    connect(&server_, &NotificationServer::appeared, this, [this] {
        outageReported_ = false;
        showWaiting();
    });
    connect(&server_, &NotificationServer::ready, this, &LinuxUserNotifications::showWaiting);
    connect(&server_, &NotificationServer::unreachable, this,
            &LinuxUserNotifications::reportOutage);
    connect(&server_, &NotificationServer::lost, this, &LinuxUserNotifications::serverLost);
    connect(&server_, &NotificationServer::actionInvoked, this,
            &LinuxUserNotifications::actionInvoked);
    connect(&server_, &NotificationServer::closed, this, &LinuxUserNotifications::closed);
}

template <class Operation>
void LinuxUserNotifications::onMainThread(Operation operation) {
    if (QThread::currentThread() != thread()) {
        QMetaObject::invokeMethod(this, std::move(operation), Qt::QueuedConnection);
        return;
    }
    // What other threads have asked for before comes first.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    operation();
}

UserNotification LinuxUserNotifications::deliver(UserNotification notification) {
    notification.identifier = QUuid::createUuid().toString(QUuid::WithoutBraces);
    onMainThread([this, notification] {
        delivered_.add(notification);
        mayTryAgain_ = true;
        showWaiting();
    });
    return notification;
}

void LinuxUserNotifications::removeDelivered(const UserNotification& notification) {
    onMainThread([this, identifier = notification.identifier] {
        if (const auto entry = delivered_.take(identifier)) {
            takeOffScreen(*entry);
        }
    });
}

void LinuxUserNotifications::removeAllDelivered() {
    onMainThread([this] {
        for (const DeliveredNotification& entry : delivered_.takeAll()) {
            takeOffScreen(entry);
        }
    });
}

// One that was sent has no number yet: it is closed when the answer finds it gone from the list.
void LinuxUserNotifications::takeOffScreen(const DeliveredNotification& entry) {
    if (entry.state == State::Shown) {
        server_.close(entry.owner, entry.id);
    }
}

bool LinuxUserNotifications::waitForPending(std::chrono::milliseconds limit) {
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(limit);
    // Not exec(): it returns at once when the application has been told to quit.
    QEventLoop loop;
    while (!server_.isIdle() && timer.isActive()) {
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return server_.isIdle();
}

void LinuxUserNotifications::showWaiting() {
    if (!delivered_.has(State::Waiting)) {
        return;
    }
    if (!server_.isReady()) {
        server_.find();
        return;
    }
    for (DeliveredNotification* entry : delivered_.waiting()) {
        show(*entry);
    }
}

void LinuxUserNotifications::show(DeliveredNotification& entry) {
    const QString owner = server_.owner();
    if (entry.owner != owner) {
        entry.owner = owner;
        entry.id = 0;
    }
    entry.state = State::Sent;
    entry.attempt = ++attempts_;
    if (!overdue_.isActive()) {
        overdue_.start();
    }
    server_.notify(
        entry.notification, entry.id,
        [this, attempt = entry.attempt, owner](const NotificationServer::Answer& answer) {
            finishShowing(attempt, owner, answer);
        });
}

void LinuxUserNotifications::finishShowing(std::uint64_t attempt, const QString& owner,
                                           const NotificationServer::Answer& answer) {
    const bool isShown = answer.error.isEmpty();
    if (DeliveredNotification* entry = delivered_.sent(attempt)) {
        if (isShown) {
            entry->state = State::Shown;
            entry->id = answer.id;
            outageReported_ = false;
            replayEarlySignals(answer.id);
        } else {
            entry->state = State::Waiting;
            reportOutage(answer.error);
        }
    } else if (isShown) {
        // Removed meanwhile, or sent anew because this server was no longer in charge.
        server_.close(owner, answer.id);
    }
    if (!delivered_.has(State::Sent)) {
        overdue_.stop();
        early_.clear();
    }
}

// What was never shown is tried once more, which has the bus start a server that ends when it has
// nothing to do; but not for ever, as the server may be one that crashes over it.
void LinuxUserNotifications::serverLost() {
    const bool unfinished = delivered_.has(State::Waiting) || delivered_.has(State::Sent);
    delivered_.serverLost();
    early_.clear();
    overdue_.stop();
    if (!unfinished) {
        return;
    }
    if (std::exchange(mayTryAgain_, false)) {
        showWaiting();
    } else if (server_.owner().isEmpty()) {
        reportOutage(QStringLiteral("it ended without a reply"));
    }
}

void LinuxUserNotifications::actionInvoked(uint id, const QString& key) {
    const bool activates = key == NotificationAction::body || key == NotificationAction::button;
    if (!activates && key != NotificationAction::otherButton) {
        return;
    }
    const auto entry = delivered_.takeClicked(id);
    if (!entry) {
        keepEarlySignal({id, key});
        return;
    }
    takeOffScreen(*entry); // some servers leave that to the program
    if (activates) {
        Q_EMIT activated(entry->notification);
    }
}

void LinuxUserNotifications::closed(uint id) {
    if (!delivered_.close(id)) {
        keepEarlySignal({id, std::nullopt});
    }
}

// The number may be that of a notification whose sending has not been answered yet: nothing
// obliges a server to answer before it reports a click. It may also be another program's, since
// some servers tell everybody about everything; hence the bound.
void LinuxUserNotifications::keepEarlySignal(EarlySignal signal) {
    constexpr std::size_t limit = 64;
    if (delivered_.has(State::Sent) && early_.size() < limit) {
        early_.push_back(std::move(signal));
    }
}

void LinuxUserNotifications::replayEarlySignals(uint id) {
    std::vector<EarlySignal> ofThisOne;
    std::copy_if(early_.begin(), early_.end(), std::back_inserter(ofThisOne),
                 [id](const EarlySignal& signal) { return signal.id == id; });
    for (const EarlySignal& signal : ofThisOne) {
        if (signal.action) {
            actionInvoked(id, *signal.action);
        } else {
            closed(id);
        }
    }
}

void LinuxUserNotifications::reportOutage(const QString& reason) {
    if (!std::exchange(outageReported_, true)) {
        log_.write(QStringLiteral("No notification service answers (%1); notifications are shown "
                                  "as soon as one does.")
                       .arg(reason));
    }
}

} // namespace quorvane
