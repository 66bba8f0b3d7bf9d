#include "platform/linux/notifications/DeliveredNotifications.h"

#include <algorithm>
#include <utility>

namespace quorvane {

DeliveredNotifications::DeliveredNotifications(std::chrono::milliseconds lateAction)
    : lateAction_(lateAction) {}

void DeliveredNotifications::add(const UserNotification& notification) {
    std::erase_if(list_, [](const DeliveredNotification& entry) {
        return entry.state == State::Closed && entry.forgotten.hasExpired();
    });
    DeliveredNotification entry;
    entry.notification = notification;
    list_.push_back(std::move(entry));
}

template <class Condition>
std::optional<DeliveredNotification> DeliveredNotifications::takeIf(Condition condition) {
    const auto found = std::find_if(list_.begin(), list_.end(), condition);
    if (found == list_.end()) {
        return std::nullopt;
    }
    std::optional<DeliveredNotification> taken(std::move(*found));
    list_.erase(found);
    return taken;
}

std::optional<DeliveredNotification> DeliveredNotifications::take(const QString& identifier) {
    return takeIf([&identifier](const DeliveredNotification& entry) {
        return entry.notification.identifier == identifier;
    });
}

std::vector<DeliveredNotification> DeliveredNotifications::takeAll() {
    return std::exchange(list_, {});
}

std::optional<DeliveredNotification> DeliveredNotifications::takeClicked(uint id) {
    return takeIf([id](const DeliveredNotification& entry) {
        return entry.id == id && (entry.state == State::Shown ||
                                  (entry.state == State::Closed && !entry.forgotten.hasExpired()));
    });
}

bool DeliveredNotifications::close(uint id) {
    const auto found =
        std::find_if(list_.begin(), list_.end(), [id](const DeliveredNotification& entry) {
            return entry.id == id && entry.state == State::Shown;
        });
    if (found == list_.end()) {
        return false;
    }
    found->state = State::Closed;
    found->forgotten = QDeadlineTimer(lateAction_);
    return true;
}

void DeliveredNotifications::serverLost() {
    std::erase_if(list_,
                  [](const DeliveredNotification& entry) { return entry.state == State::Closed; });
    for (DeliveredNotification& entry : list_) {
        entry.state = State::Waiting;
    }
}

bool DeliveredNotifications::has(State state) const {
    return std::any_of(list_.begin(), list_.end(), [state](const DeliveredNotification& entry) {
        return entry.state == state;
    });
}

std::vector<DeliveredNotification*> DeliveredNotifications::waiting() {
    std::vector<DeliveredNotification*> found;
    for (DeliveredNotification& entry : list_) {
        if (entry.state == State::Waiting) {
            found.push_back(&entry);
        }
    }
    return found;
}

DeliveredNotification* DeliveredNotifications::sent(std::uint64_t attempt) {
    const auto found =
        std::find_if(list_.begin(), list_.end(), [attempt](const DeliveredNotification& entry) {
            return entry.attempt == attempt && entry.state == State::Sent;
        });
    return found == list_.end() ? nullptr : &*found;
}

} // namespace quorvane
