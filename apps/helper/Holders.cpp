#include "apps/helper/Holders.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

#include <algorithm>

namespace quorvane {

Holders::Holders(const QDBusConnection& bus) : bus_(bus) {
    watcher_.setConnection(bus);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, &Holders::callerLeft);
}

bool Holders::add(const QString& thing, const QString& caller) {
    const QSet<QString> present = holders_.value(thing);
    if (present.contains(caller)) {
        return true;
    }
    if (present.size() >= limit) {
        return false;
    }
    watcher_.addWatchedService(caller);
    // It may have left before it was watched.
    if (!bus_.interface()->isServiceRegistered(caller).value()) {
        if (!holdsAnything(caller)) {
            watcher_.removeWatchedService(caller);
        }
        return false;
    }
    holders_[thing].insert(caller);
    return true;
}

void Holders::remove(const QString& thing, const QString& caller) {
    const auto found = holders_.find(thing);
    if (found == holders_.end() || !found->remove(caller)) {
        return;
    }
    if (found->isEmpty()) {
        holders_.erase(found);
    }
    if (!holdsAnything(caller)) {
        watcher_.removeWatchedService(caller);
    }
}

bool Holders::holdsAnything(const QString& caller) const {
    return std::any_of(holders_.cbegin(), holders_.cend(),
                       [&caller](const QSet<QString>& each) { return each.contains(caller); });
}

void Holders::callerLeft(const QString& caller) {
    const QStringList things = holders_.keys();
    for (const QString& thing : things) {
        if (holders_.value(thing).contains(caller)) {
            remove(thing, caller);
            if (!isHeld(thing)) {
                Q_EMIT abandoned(thing);
            }
        }
    }
}

} // namespace quorvane
