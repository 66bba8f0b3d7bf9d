#include "apps/helper/PowerSwitch.h"

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

// The driver tells its name on success, and else what went wrong.
Outcome described(const QString& state, const Outcome& outcome) {
    return {outcome.done,
            outcome.done ? QStringLiteral("%1 (%2)").arg(state, outcome.text) : outcome.text};
}

} // namespace

PowerSwitch::PowerSwitch(Wording wording, Drivers drivers)
    : wording_(std::move(wording)), drivers_(std::move(drivers)) {}

Driver* PowerSwitch::findDriver() const {
    const auto found = std::find_if(drivers_.cbegin(), drivers_.cend(),
                                    [](const auto& driver) { return driver->probe(); });
    return found == drivers_.cend() ? nullptr : found->get();
}

bool PowerSwitch::isAvailable() const {
    return engaged_ != nullptr || findDriver() != nullptr;
}

void PowerSwitch::hold(const QString& party, const Reported& reported) {
    add({true, party, reported});
}

void PowerSwitch::release(const QString& party, const Reported& reported) {
    add({false, party, reported});
}

void PowerSwitch::releaseAll() {
    const QSet<QString> parties = parties_;
    for (const QString& party : parties) {
        release(party, [](const Outcome& /*outcome*/) {});
    }
}

void PowerSwitch::add(const Request& request) {
    requests_.enqueue(request);
    work();
}

void PowerSwitch::work() {
    while (!isBusy_ && !requests_.isEmpty()) {
        isBusy_ = true;
        carryOut(requests_.dequeue());
    }
}

void PowerSwitch::carryOut(const Request& request) {
    if (request.isHold) {
        carryOutHold(request);
    } else {
        carryOutRelease(request);
    }
}

void PowerSwitch::carryOutHold(const Request& request) {
    if (engaged_ != nullptr) {
        parties_.insert(request.party);
        finish(request, {true, wording_.on});
        return;
    }
    Driver* const driver = findDriver();
    if (driver == nullptr) {
        finish(request, {false, wording_.absent});
        return;
    }
    driver->engage([this, request, driver](const Outcome& outcome) {
        if (outcome.done) {
            engaged_ = driver;
            parties_.insert(request.party);
        } else if (!driver->probe()) {
            carryOutHold(request); // the machine does not have it after all
            return;
        }
        finish(request, described(wording_.on, outcome));
    });
}

void PowerSwitch::carryOutRelease(const Request& request) {
    parties_.remove(request.party);
    if (!parties_.isEmpty()) {
        finish(request, {true, wording_.stillOn});
        return;
    }
    Driver* const driver = std::exchange(engaged_, nullptr);
    if (driver == nullptr) {
        finish(request, {true, wording_.off});
        return;
    }
    driver->release([this, request](const Outcome& outcome) {
        finish(request, described(wording_.off, outcome));
    });
}

void PowerSwitch::finish(const Request& request, const Outcome& outcome) {
    isBusy_ = false;
    request.reported(outcome);
    work();
}

} // namespace quorvane
