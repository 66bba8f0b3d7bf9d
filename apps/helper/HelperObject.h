#pragma once

#include "apps/helper/CallLimits.h"
#include "apps/helper/Outcome.h"
#include "platform/linux/common/ExportedObject.h"

#include <functional>

namespace quorvane {

class Authority;
class HelperCommands;

/// The helper on the bus. Every command is checked with polkit for whoever has sent it, before
/// anything is done; each gets one reply: a text, or an error when it may not or there are too
/// many. Main thread only.
class HelperObject final : public ExportedObject {
    Q_OBJECT

  public:
    /// The references must outlive this.
    HelperObject(const QDBusConnection& bus, Authority& authority, HelperCommands& commands);

    /// Whether a command is under way.
    [[nodiscard]] bool isBusy() const { return !limits_.isEmpty(); }

    /// From now on every command is refused, with an error that says that it was not carried out
    /// and may be sent again.
    void leave() { isLeaving_ = true; }

  Q_SIGNALS:
    /// A command has been answered, and no other one is under way.
    void becameIdle();

  private:
    using Body = std::function<void(const QDBusMessage& call)>;

    void add(QLatin1String name, QLatin1String signature, const QString& action, const Body& body);
    void receive(const QDBusMessage& call, const QString& action, const Body& body);
    void finish(const QDBusMessage& call, const QDBusMessage& reply);
    void send(const QDBusMessage& call, const QDBusMessage& reply) const;
    [[nodiscard]] Reported replyTo(const QDBusMessage& call);

    QDBusConnection bus_;
    Authority& authority_;
    HelperCommands& commands_;
    CallLimits limits_;
    bool isLeaving_ = false;
};

} // namespace quorvane
