#pragma once

#include <QObject>
#include <QString>

namespace quorvane {

struct UserNotification;

/// Turns battery events into the offer of Low Power Mode, tells the user what the mode does, and
/// takes his answers to every notification of the application. Owned by the controller. Main thread
/// only.
class NotificationController : public QObject {
    Q_OBJECT

  public:
    NotificationController();

    /// Has the offer been made in this discharge? It is then not repeated at every further percent.
    [[nodiscard]] bool alreadyAsked() const { return alreadyAsked_; }

    void setAlreadyAsked(bool asked) { alreadyAsked_ = asked; }

    /// A notice without buttons that goes away after 5 seconds.
    void showNotificationWithTitle(const QString& title, const QString& infoText);

    /// The offer of Low Power Mode; stays until the user acts.
    void showLowPowerNotification();

    /// The suggestion of the Turbo module; goes away after 8 seconds.
    void showTurboNotification();

    /// Low Power Mode was started by itself.
    void enabledNotification();

    /// Low Power Mode has ended. Consumes the saved minutes; says something if there are 2 or more,
    /// or if `alwaysShow`.
    void disabledNotificationAlwaysShow(bool alwaysShow);

    /// The user has clicked a notification or its action button.
    void didActivateNotification(const UserNotification& notification);

    /// A battery event; `sender` is the battery monitor.
    void batteryStatusChanged(const QString& event, QObject* sender);

  private:
    bool alreadyAsked_ = false;
};

} // namespace quorvane
