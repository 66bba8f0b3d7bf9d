#pragma once

#include "platform/Authorization.h"
#include "platform/HelperInstaller.h"
#include "platform/HelperTransport.h"

namespace quorvane {

/// The privileged helper on a machine whose bundle carries none: it is not installed, cannot be
/// installed or reached, and there are no rights to register for it.
class AbsentHelper final : public HelperInstaller, public HelperTransport, public Authorization {
  public:
    [[nodiscard]] bool isInstalled(const QString& label) const override;
    std::optional<QString> install(const QString& label) override;
    std::optional<QString> remove(const QString& label) override;
    [[nodiscard]] std::unique_ptr<HelperConnection> connectTo(const QString& serviceName) override;

    [[nodiscard]] std::unique_ptr<AuthorizationRef> create() override;
    [[nodiscard]] std::optional<QByteArray> externalForm(const AuthorizationRef& ref) override;

    /// Rights come to the machine together with the helper: none is missing without it.
    [[nodiscard]] RightStatus right(const QString& name) override;
    bool setRight(const AuthorizationRef& ref, const QString& name, const QString& rule,
                  const QString& description, const QString& table) override;
};

} // namespace quorvane
