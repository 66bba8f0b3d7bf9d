#include "core/NotificationDelivery.h"

#include "core/BlockTimers.h"
#include "core/SharedInstances.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"

#include <list>
#include <memory>

namespace quorvane {

namespace {

constexpr Seconds shortInterval{5.0};

// The removals that are still to come. Each timer takes itself off the list when it fires.
class PendingRemovals {
  public:
    void add(const UserNotification& notification, Seconds interval) {
        const auto place = timers_.emplace(timers_.end());
        *place = scheduledTimerWithTimeInterval(
            interval,
            [this, place, notification] {
                timers_.erase(place);
                platform().userNotifications().removeDelivered(notification);
            },
            Repeats::No);
    }

  private:
    std::list<std::unique_ptr<BlockTimer>> timers_;
};

} // namespace

void deliverNotification(const UserNotification& notification, Seconds interval) {
    const UserNotification delivered = platform().userNotifications().deliver(notification);
    queueOnMain([delivered, interval] {
        SharedInstances::get<PendingRemovals>().add(delivered, interval);
    });
}

void deliverShortNotification(const UserNotification& notification) {
    deliverNotification(notification, shortInterval);
}

} // namespace quorvane
