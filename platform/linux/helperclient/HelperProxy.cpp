#include "platform/linux/HelperProxy.h"

#include "platform/linux/HelperNames.h"

#include <utility>

namespace quorvane {

HelperProxy::HelperProxy(QString service, Send send, ErrorHandler errorHandler)
    : service_(std::move(service)), send_(std::move(send)), errorHandler_(std::move(errorHandler)) {
}

QDBusMessage HelperProxy::message(QLatin1String method, const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(service_, helpernames::path,
                                                          helpernames::label, QString(method));
    message.setArguments(arguments);
    return message;
}

void HelperProxy::sendForStatus(const QDBusMessage& message, StatusReply reply) {
    send_({message, QStringLiteral("s"),
           [reply = std::move(reply)](const QDBusMessage& answer) {
               reply(answer.arguments().constFirst().toString());
           },
           errorHandler_});
}

void HelperProxy::loadModuleNamed(const QString& path, StatusReply reply) {
    sendForStatus(message(helpernames::loadModuleNamed, {path}), std::move(reply));
}

void HelperProxy::unloadModuleNamed(const QString& path, StatusReply reply) {
    sendForStatus(message(helpernames::unloadModuleNamed, {path}), std::move(reply));
}

void HelperProxy::getTaskPowerMetrics(LinesReply reply) {
    send_({message(helpernames::getTaskPowerMetrics), QStringLiteral("as"),
           [reply = std::move(reply)](const QDBusMessage& answer) {
               reply(answer.arguments().constFirst().toStringList());
           },
           errorHandler_});
}

void HelperProxy::getVersion(StatusReply reply) {
    sendForStatus(message(helpernames::getVersion), std::move(reply));
}

void HelperProxy::enableLowPowerMode(StatusReply reply) {
    sendForStatus(message(helpernames::enableLowPowerMode), std::move(reply));
}

void HelperProxy::disableLowPowerMode(StatusReply reply) {
    sendForStatus(message(helpernames::disableLowPowerMode), std::move(reply));
}

} // namespace quorvane
