#include "apps/helper/PowerProfilesHold.h"

#include "platform/linux/common/PowerProfilesNames.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

BusCall profilesCall(const QString& service, const QString& method, const QVariantList& arguments) {
    const auto* const place =
        std::find_if(powerprofiles::places.begin(), powerprofiles::places.end(),
                     [&service](const powerprofiles::Place& each) { return each.name == service; });
    return {.service = place->name,
            .path = place->path,
            .interface = place->name,
            .method = method,
            .arguments = arguments,
            .limit = BusCall::usualLimit};
}

/// What a hold is given back by, or why there is none.
Result<QVariant> cookieOf(const BusAnswer& answer) {
    return answer.valueOf(QLatin1String("u"));
}

} // namespace

PowerProfilesHold::PowerProfilesHold(const QDBusConnection& bus) : bus_(bus), calls_(bus) {
    watcher_.setConnection(bus);
    watcher_.setWatchMode(QDBusServiceWatcher::WatchForRegistration);
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &PowerProfilesHold::appeared);
    for (const powerprofiles::Place& each : powerprofiles::places) {
        bus_.connect(each.name, each.path, each.name, QStringLiteral("ProfileReleased"), this,
                     SLOT(profileReleased(uint)));
    }
}

QString PowerProfilesHold::name() const {
    return QStringLiteral("power profile \"power-saver\"");
}

// Asked of the bus itself, which always answers.
QString PowerProfilesHold::availableService() const {
    if (!bus_.isConnected()) {
        return {};
    }
    const QDBusConnectionInterface* const daemon = bus_.interface();
    const QStringList activatable = daemon->activatableServiceNames().value();
    for (const powerprofiles::Place& each : powerprofiles::places) {
        const bool canBeStarted =
            activatable.contains(each.name) && !unstartable_.contains(each.name);
        if (canBeStarted || daemon->isServiceRegistered(each.name).value()) {
            return each.name;
        }
    }
    return {};
}

bool PowerProfilesHold::probe() const {
    return !availableService().isEmpty();
}

void PowerProfilesHold::engage(const Reported& reported) {
    if (!service_.isEmpty()) {
        reported({true, name()});
        return;
    }
    service_ = availableService();
    if (service_.isEmpty()) {
        reported({false, QStringLiteral("no power-profiles service is there")});
        return;
    }
    watcher_.addWatchedService(service_);
    ask(reported);
}

void PowerProfilesHold::ask(const Reported& reported) {
    const BusCall call =
        profilesCall(service_, QStringLiteral("HoldProfile"),
                     {QStringLiteral("power-saver"), QStringLiteral("Low Power Mode"),
                      QStringLiteral("com.TarnwickStudios.quorvane")});
    calls_.ask(call,
               [this, reported, service = service_, asked = ++asked_](const BusAnswer& answer) {
                   if (asked == asked_) {
                       held(answer, reported);
                       return;
                   }
                   if (const Result<QVariant> cookie = cookieOf(answer)) {
                       // It was released before it was granted.
                       giveBack(service, cookie->toUInt(), [](const BusAnswer& /*answer*/) {});
                   }
                   reported({false, QStringLiteral("it was given up meanwhile")});
               });
}

void PowerProfilesHold::giveBack(const QString& service, uint cookie,
                                 const BusCalls::Answered& answered) {
    calls_.ask(profilesCall(service, QStringLiteral("ReleaseProfile"), {cookie}), answered);
}

void PowerProfilesHold::held(const BusAnswer& answer, const Reported& reported) {
    const Result<QVariant> cookie = cookieOf(answer);
    if (cookie) {
        cookie_ = cookie->toUInt();
        isWanted_ = true;
        reported({true, name()});
        return;
    }
    if (isWanted_) {
        return; // it has ended again; the next one is asked when it appears
    }
    const QString service = std::exchange(service_, {});
    watcher_.removeWatchedService(service);
    if (!bus_.interface()->isServiceRegistered(service).value()) {
        unstartable_.insert(service);
    }
    if (unstartable_.contains(service) && probe()) {
        engage(reported); // the other name
        return;
    }
    reported({false, QStringLiteral("the power-profiles service refused: %1").arg(cookie.error())});
}

void PowerProfilesHold::release(const Reported& reported) {
    ++asked_;
    isWanted_ = false;
    const QString service = std::exchange(service_, {});
    const std::optional<uint> cookie = std::exchange(cookie_, std::nullopt);
    if (!service.isEmpty()) {
        watcher_.removeWatchedService(service);
    }
    if (!cookie) {
        reported({true, name()});
        return;
    }
    // A service that has forgotten the hold has gone back to the user's profile as well.
    giveBack(service, *cookie, [this, reported](const BusAnswer& /*answer*/) {
        reported({true, name()});
    });
}

// The user has chosen a profile: that is his, from now on.
void PowerProfilesHold::profileReleased(uint cookie) {
    if (cookie_ == cookie) {
        cookie_.reset();
        isWanted_ = false;
    }
}

void PowerProfilesHold::appeared(const QString& service) {
    if (service == service_ && isWanted_) {
        cookie_.reset();
        ask([](const Outcome& /*outcome*/) {});
    }
}

} // namespace quorvane
