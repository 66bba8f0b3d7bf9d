#include "apps/helper/HelperObject.h"

#include "apps/helper/ActionNames.h"
#include "apps/helper/Authority.h"
#include "apps/helper/HelperCommands.h"
#include "platform/linux/common/HelperNames.h"

#include <QDBusError>

namespace quorvane {

namespace {

constexpr QLatin1String helperDescription(R"(
  <interface name="com.TarnwickStudios.quorvane.helper">
    <method name="LoadModuleNamed">
      <arg name="path" type="s" direction="in"/><arg name="status" type="s" direction="out"/>
    </method>
    <method name="UnloadModuleNamed">
      <arg name="path" type="s" direction="in"/><arg name="status" type="s" direction="out"/>
    </method>
    <method name="GetTaskPowerMetrics"><arg name="lines" type="as" direction="out"/></method>
    <method name="GetVersion"><arg name="version" type="s" direction="out"/></method>
    <method name="EnableLowPowerMode"><arg name="status" type="s" direction="out"/></method>
    <method name="DisableLowPowerMode"><arg name="status" type="s" direction="out"/></method>
  </interface>
)");

constexpr QLatin1String noArguments("");
constexpr QLatin1String oneString("s");

} // namespace

HelperObject::HelperObject(const QDBusConnection& bus, Authority& authority,
                           HelperCommands& commands)
    : ExportedObject(bus, helpernames::path, helpernames::label, helperDescription), bus_(bus),
      authority_(authority), commands_(commands) {
    add(helpernames::loadModuleNamed, oneString, actionnames::slowDown,
        [this](const QDBusMessage& call) {
            commands_.loadModuleNamed(call.arguments().at(0).toString(), call.service(),
                                      replyTo(call));
        });
    add(helpernames::unloadModuleNamed, oneString, actionnames::putBack,
        [this](const QDBusMessage& call) {
            commands_.unloadModuleNamed(call.arguments().at(0).toString(), call.service(),
                                        replyTo(call));
        });
    add(helpernames::getTaskPowerMetrics, noArguments, actionnames::taskPowerMetrics,
        [this](const QDBusMessage& call) {
            commands_.getTaskPowerMetrics(
                [this, call](const QStringList& lines) { finish(call, call.createReply(lines)); });
        });
    add(helpernames::getVersion, noArguments, actionnames::getVersion,
        [this](const QDBusMessage& call) {
            finish(call, call.createReply(HelperCommands::getVersion()));
        });
    add(helpernames::enableLowPowerMode, noArguments, actionnames::slowDown,
        [this](const QDBusMessage& call) {
            commands_.enableLowPowerMode(call.service(), replyTo(call));
        });
    add(helpernames::disableLowPowerMode, noArguments, actionnames::putBack,
        [this](const QDBusMessage& call) {
            commands_.disableLowPowerMode(call.service(), replyTo(call));
        });
}

void HelperObject::add(QLatin1String name, QLatin1String signature, const QString& action,
                       const Body& body) {
    addDeferredMethod(name, signature, [this, action, body](const QDBusMessage& call) {
        receive(call, action, body);
    });
}

void HelperObject::receive(const QDBusMessage& call, const QString& action, const Body& body) {
    if (isLeaving_) {
        send(call, call.createErrorReply(helpernames::leavingError,
                                         QStringLiteral("The helper is leaving; ask again.")));
        return;
    }
    if (!limits_.take(call.service())) {
        send(call, call.createErrorReply(QDBusError::LimitsExceeded,
                                         QStringLiteral("Too many commands are under way.")));
        return;
    }
    authority_.check(call.service(), action, [this, call, body](bool isAllowed) {
        if (isAllowed) {
            body(call);
            return;
        }
        finish(call, call.createErrorReply(QDBusError::AccessDenied,
                                           QStringLiteral("This is not allowed here.")));
    });
}

Reported HelperObject::replyTo(const QDBusMessage& call) {
    return [this, call](const Outcome& outcome) { finish(call, call.createReply(outcome.text)); };
}

void HelperObject::send(const QDBusMessage& call, const QDBusMessage& reply) const {
    if (call.isReplyRequired()) {
        bus_.send(reply);
    }
}

void HelperObject::finish(const QDBusMessage& call, const QDBusMessage& reply) {
    send(call, reply);
    limits_.release(call.service());
    if (limits_.isEmpty()) {
        Q_EMIT becameIdle();
    }
}

} // namespace quorvane
