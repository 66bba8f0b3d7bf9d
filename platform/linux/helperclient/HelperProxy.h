#pragma once

#include "platform/HelperToolProtocol.h"
#include "platform/linux/helperclient/HelperCall.h"

#include <QString>
#include <QVariantList>

#include <functional>

namespace quorvane {

/// The helper's commands as calls on the bus.
class HelperProxy final : public HelperToolProtocol {
  public:
    using Send = std::function<void(HelperCall call)>;
    using ErrorHandler = std::function<void(const QString& error)>;

    /// `service` is the helper's name on the bus.
    HelperProxy(QString service, Send send, ErrorHandler errorHandler);

    void loadModuleNamed(const QString& path, StatusReply reply) override;
    void unloadModuleNamed(const QString& path, StatusReply reply) override;
    void getTaskPowerMetrics(LinesReply reply) override;
    void getVersion(StatusReply reply) override;
    void enableLowPowerMode(StatusReply reply) override;
    void disableLowPowerMode(StatusReply reply) override;

  private:
    [[nodiscard]] BusCall question(QLatin1String method, const QVariantList& arguments = {}) const;
    void sendForStatus(const BusCall& question, StatusReply reply);

    QString service_;
    Send send_;
    ErrorHandler errorHandler_;
};

} // namespace quorvane
