#pragma once

#include "platform/Clock.h"
#include "platform/UserNotifications.h"

namespace quorvane {

/// Delivers the notification at once and takes it off the list again after `interval`. Any thread;
/// the removal happens on the main loop.
void deliverNotification(const UserNotification& notification, Seconds interval);

/// The same with 5 seconds.
void deliverShortNotification(const UserNotification& notification);

} // namespace quorvane
