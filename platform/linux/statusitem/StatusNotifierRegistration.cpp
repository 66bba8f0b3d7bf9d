#include "platform/linux/StatusNotifierRegistration.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMetaObject>

#include <limits>
#include <utility>

namespace quorvane {

namespace {

constexpr QLatin1String watcherName("org.kde.StatusNotifierWatcher");
constexpr QLatin1String watcherPath("/StatusNotifierWatcher");
constexpr int noTimeout = std::numeric_limits<int>::max(); // as D-Bus has it

// Of RequestName, as the D-Bus specification has them.
constexpr uint doNotQueue = 4;
constexpr uint isPrimaryOwner = 1;
constexpr uint wasPrimaryOwner = 4;

QString conventionalName() {
    return QStringLiteral("org.kde.StatusNotifierItem-%1-1")
        .arg(QCoreApplication::applicationPid());
}

QDBusMessage busCall(QLatin1String method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), method);
    message.setArguments(arguments);
    return message;
}

} // namespace

StatusNotifierRegistration::StatusNotifierRegistration(const QDBusConnection& bus, LogSink& log)
    : bus_(bus), log_(log),
      ownerChanges_(watcherName, bus, QDBusServiceWatcher::WatchForOwnerChange) {
    if (!bus_.isConnected()) {
        log_.write(QStringLiteral("There is no session bus, and so no status item."));
        return;
    }
    connect(&ownerChanges_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { changeWatcher(owner); });
    QMetaObject::invokeMethod(
        this, [this] { requestName(); }, Qt::QueuedConnection);
}

StatusNotifierRegistration::~StatusNotifierRegistration() {
    QDBusMessage release = busCall(QLatin1String("ReleaseName"), {conventionalName()});
    bus_.send(release);
}

// Another container's program can have the same process id and with it the name. The connection's
// own name always serves, only that hosts keep the item until the connection ends.
void StatusNotifierRegistration::requestName() {
    call(busCall(QLatin1String("RequestName"), {conventionalName(), doNotQueue}),
         [this](const QDBusPendingReply<uint>& reply) {
             const bool isOurs = !reply.isError() && (reply.value() == isPrimaryOwner ||
                                                      reply.value() == wasPrimaryOwner);
             itemName_ = isOurs ? conventionalName() : bus_.baseService();
             if (watcherOwner_.isEmpty()) {
                 lookUpWatcher();
             } else {
                 registerItem();
             }
         });
}

// Nobody announces a watcher that was there before.
void StatusNotifierRegistration::lookUpWatcher() {
    call(busCall(QLatin1String("GetNameOwner"), {QString(watcherName)}),
         [this](const QDBusPendingReply<QString>& reply) {
             if (!watcherOwner_.isEmpty()) {
                 return; // one has appeared meanwhile
             }
             if (reply.isError()) {
                 reportNoWatcher();
             } else {
                 changeWatcher(reply.value());
             }
         });
}

void StatusNotifierRegistration::changeWatcher(const QString& owner) {
    watcherOwner_ = owner;
    if (!watcherOwner_.isEmpty() && !itemName_.isEmpty()) {
        registerItem();
    }
}

void StatusNotifierRegistration::registerItem() {
    QDBusMessage message = QDBusMessage::createMethodCall(
        watcherOwner_, watcherPath, watcherName, QStringLiteral("RegisterStatusNotifierItem"));
    message << itemName_;
    call(message, [this, asked = watcherOwner_](const QDBusPendingCall& reply) {
        if (reply.isError() && asked == watcherOwner_) {
            log_.write(QStringLiteral("The desktop's bar does not take the status item: %1 (%2)")
                           .arg(reply.error().message(), reply.error().name()));
        }
    });
}

void StatusNotifierRegistration::reportNoWatcher() {
    if (!std::exchange(hasReported_, true)) {
        log_.write(QStringLiteral(
            "This desktop has no bar for status items at the moment, so the icon is not shown. "
            "It appears as soon as there is one: a panel with a status or notification area, or "
            "on GNOME the extension \"AppIndicator and KStatusNotifierItem Support\"."));
    }
}

void StatusNotifierRegistration::call(const QDBusMessage& message, ReplyHandler handler) {
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message, noTimeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [handler = std::move(handler)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                handler(*finished);
            });
}

} // namespace quorvane
