#include "platform/linux/helperclient/HelperProxy.h"

#include "platform/linux/common/HelperNames.h"

#include <utility>

namespace quorvane {

HelperProxy::HelperProxy(QString service, Send send, ErrorHandler errorHandler)
    : service_(std::move(service)), send_(std::move(send)), errorHandler_(std::move(errorHandler)) {
}

BusCall HelperProxy::question(QLatin1String method, const QVariantList& arguments) const {
    return {.service = service_,
            .path = helpernames::path,
            .interface = helpernames::label,
            .method = method,
            .arguments = arguments,
            .limit = BusCall::noLimit}; // a sample of the machine's power takes long
}

void HelperProxy::sendForStatus(const BusCall& question, StatusReply reply) {
    send_(
        {question, QLatin1String("s"),
         [reply = std::move(reply)](const BusAnswer& answer) { reply(answer.value().toString()); },
         errorHandler_});
}

void HelperProxy::loadModuleNamed(const QString& path, StatusReply reply) {
    sendForStatus(question(helpernames::loadModuleNamed, {path}), std::move(reply));
}

void HelperProxy::unloadModuleNamed(const QString& path, StatusReply reply) {
    sendForStatus(question(helpernames::unloadModuleNamed, {path}), std::move(reply));
}

void HelperProxy::getTaskPowerMetrics(LinesReply reply) {
    send_({question(helpernames::getTaskPowerMetrics), QLatin1String("as"),
           [reply = std::move(reply)](const BusAnswer& answer) {
               reply(answer.value().toStringList());
           },
           errorHandler_});
}

void HelperProxy::getVersion(StatusReply reply) {
    sendForStatus(question(helpernames::getVersion), std::move(reply));
}

void HelperProxy::enableLowPowerMode(StatusReply reply) {
    sendForStatus(question(helpernames::enableLowPowerMode), std::move(reply));
}

void HelperProxy::disableLowPowerMode(StatusReply reply) {
    sendForStatus(question(helpernames::disableLowPowerMode), std::move(reply));
}

} // namespace quorvane
