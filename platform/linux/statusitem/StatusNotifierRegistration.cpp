#include "platform/linux/statusitem/StatusNotifierRegistration.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <utility>

namespace quorvane {

namespace {

constexpr QLatin1String watcherName("org.kde.StatusNotifierWatcher");
constexpr QLatin1String watcherPath("/StatusNotifierWatcher");

// Of RequestName, in the numbers of the protocol.
constexpr uint doNotQueue = 4;
constexpr uint isPrimaryOwner = 1;
constexpr uint wasPrimaryOwner = 4;

QString conventionalName() {
    return QStringLiteral("org.kde.StatusNotifierItem-%1-1")
        .arg(QCoreApplication::applicationPid());
}

BusCall busCall(const QString& method, const QVariantList& arguments) {
    return BusCall::toBus(method, arguments, BusCall::noLimit);
}

} // namespace

StatusNotifierRegistration::StatusNotifierRegistration(const QDBusConnection& bus, LogSink& log)
    : bus_(bus), calls_(bus), log_(log),
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
    bus_.send(busCall(QStringLiteral("ReleaseName"), {conventionalName()}).message());
}

// Another container's program can have the same process id and with it the name. The connection's
// own name always serves, only that hosts keep the item until the connection ends.
void StatusNotifierRegistration::requestName() {
    calls_.ask(busCall(QStringLiteral("RequestName"), {conventionalName(), doNotQueue}),
               [this](const BusAnswer& answer) {
                   const uint outcome = answer.value().toUInt();
                   const bool isOurs = outcome == isPrimaryOwner || outcome == wasPrimaryOwner;
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
    calls_.ask(busCall(QStringLiteral("GetNameOwner"), {QString(watcherName)}),
               [this](const BusAnswer& owner) {
                   if (!watcherOwner_.isEmpty()) {
                       return; // one has appeared meanwhile
                   }
                   if (owner.isReply()) {
                       changeWatcher(owner.value().toString());
                   } else {
                       reportNoWatcher();
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
    calls_.ask({.service = watcherOwner_,
                .path = watcherPath,
                .interface = watcherName,
                .method = QStringLiteral("RegisterStatusNotifierItem"),
                .arguments = {itemName_},
                .limit = BusCall::noLimit},
               [this, asked = watcherOwner_](const BusAnswer& answer) {
                   if (!answer.isReply() && asked == watcherOwner_) {
                       log_.write(QStringLiteral(
                                      "The desktop's bar does not take the status item: %1 (%2)")
                                      .arg(answer.message().errorMessage(), answer.errorName()));
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

} // namespace quorvane
