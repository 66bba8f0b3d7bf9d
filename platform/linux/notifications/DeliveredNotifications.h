#pragma once

#include "platform/UserNotifications.h"

#include <QDeadlineTimer>
#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {

/// A notification and how far it has come.
struct DeliveredNotification {
    enum class State {
        Waiting, ///< for a server
        Sent,    ///< to a server that has not answered yet
        Shown,   ///< on the screen under `id`
        Closed,  ///< off the screen; a click may still be announced
    };

    UserNotification notification;
    State state = State::Waiting;
    std::uint64_t attempt = 0; ///< number of the sending that counts, among all of them
    QString owner;             ///< the server that it was last sent to
    uint id = 0;               ///< the number that this server gave it, or 0
    QDeadlineTimer forgotten;  ///< when a closed one is past being clicked
};

/// The notifications that the user has not acted on, and those that were closed a moment ago:
/// servers differ in whether they announce a click before or after the closing that comes with it.
class DeliveredNotifications {
  public:
    using State = DeliveredNotification::State;

    /// A closed notification is kept for `lateAction`.
    explicit DeliveredNotifications(std::chrono::milliseconds lateAction);

    void add(const UserNotification& notification);

    /// Strikes one off, or nothing when it is not there.
    std::optional<DeliveredNotification> take(const QString& identifier);
    std::vector<DeliveredNotification> takeAll();

    /// Strikes off the one that was clicked, shown or just closed, by its server's number.
    std::optional<DeliveredNotification> takeClicked(uint id);

    /// The one shown under this number is closed. Returns whether there was one.
    bool close(uint id);

    /// The server has gone: what has not been closed waits for the next one.
    void serverLost();

    [[nodiscard]] bool has(State state) const;

    // Pointers into the list hold until it is changed.
    [[nodiscard]] std::vector<DeliveredNotification*> waiting();
    [[nodiscard]] DeliveredNotification* sent(std::uint64_t attempt);

  private:
    template <class Condition>
    std::optional<DeliveredNotification> takeIf(Condition condition);

    std::chrono::milliseconds lateAction_;
    std::vector<DeliveredNotification> list_;
};

} // namespace quorvane
