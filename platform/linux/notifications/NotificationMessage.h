#pragma once

#include "platform/UserNotifications.h"

#include <QVariantList>

namespace quorvane {

/// What a notification server has said it can do, as far as it matters here.
struct NotificationCapabilities {
    bool actions = false;    ///< offers buttons and reports clicks
    bool bodyMarkup = false; ///< reads the text as markup
};

/// Keys of the actions that are offered to the user.
namespace NotificationAction {
inline constexpr QLatin1String body("default"); ///< a click on the notification itself
inline constexpr QLatin1String button("action");
inline constexpr QLatin1String otherButton("other");
} // namespace NotificationAction

/// The arguments of org.freedesktop.Notifications.Notify for `notification`. `replacesId` is the
/// server's number of the notification whose place it takes, or 0.
[[nodiscard]] QVariantList notifyArguments(const UserNotification& notification,
                                           const NotificationCapabilities& capabilities,
                                           uint replacesId);

} // namespace quorvane
