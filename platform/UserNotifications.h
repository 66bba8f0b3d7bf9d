#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace quorvane {

/// One notification as the user sees it. Texts are final (translated and filled in), plain text
/// without markup.
struct UserNotification {
    QString title;
    QString informativeText;
    QString actionButtonTitle; ///< empty: no action button
    QString otherButtonTitle;  ///< dismisses; empty: no such button
    QVariantMap userInfo;      ///< carried along, never shown
    QString identifier;        ///< given by `deliver`; tells delivered notifications apart
};

/// The desktop's notifications of this application. Any thread may deliver and remove; activations
/// are announced on the main thread.
class UserNotificationCenter : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Shows the notification now, or as soon as the desktop has a notification service; it stays
    /// until the user acts or it is removed. Gives it a new `identifier` and returns it with that.
    virtual UserNotification deliver(UserNotification notification) = 0;

    /// Takes the notification off the screen and the list. One that is not there is no error.
    virtual void removeDelivered(const UserNotification& notification) = 0;

    virtual void removeAllDelivered() = 0;

  Q_SIGNALS:
    /// The user clicked the notification or its action button (not the other button).
    void activated(const quorvane::UserNotification& notification);
};

} // namespace quorvane
