#include "platform/linux/HelperCommands.h"

#include "platform/linux/HelperNames.h"

#include <utility>

namespace quorvane {

HelperCommands::HelperCommands(QString service, Send send, ErrorHandler errorHandler)
    : service_(std::move(service)), send_(std::move(send)), errorHandler_(std::move(errorHandler)) {
}

QDBusMessage HelperCommands::message(QLatin1String method, const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(service_, helpernames::path,
                                                          helpernames::label, QString(method));
    message.setArguments(arguments);
    return message;
}

void HelperCommands::sendForStatus(const QDBusMessage& message, StatusReply reply) {
    send_({message, QStringLiteral("s"),
           [reply = std::move(reply)](const QDBusMessage& answer) {
               reply(answer.arguments().constFirst().toString());
           },
           errorHandler_});
}

void HelperCommands::loadModuleNamed(const QString& path, StatusReply reply) {
    sendForStatus(message(helpernames::loadModuleNamed, {path}), std::move(reply));
}

void HelperCommands::unloadModuleNamed(const QString& path, StatusReply reply) {
    sendForStatus(message(helpernames::unloadModuleNamed, {path}), std::move(reply));
}

void HelperCommands::getTaskPowerMetrics(LinesReply reply) {
    send_({message(helpernames::getTaskPowerMetrics), QStringLiteral("as"),
           [reply = std::move(reply)](const QDBusMessage& answer) {
               reply(answer.arguments().constFirst().toStringList());
           },
           errorHandler_});
}

void HelperCommands::getVersion(StatusReply reply) {
    sendForStatus(message(helpernames::getVersion), std::move(reply));
}

void HelperCommands::enableLowPowerMode(StatusReply reply) {
    sendForStatus(message(helpernames::enableLowPowerMode), std::move(reply));
}

void HelperCommands::disableLowPowerMode(StatusReply reply) {
    sendForStatus(message(helpernames::disableLowPowerMode), std::move(reply));
}

} // namespace quorvane
