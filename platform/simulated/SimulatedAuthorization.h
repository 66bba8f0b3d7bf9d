#pragma once

#include "platform/Authorization.h"

#include <QMap>

namespace quorvane {

/// A rights store in memory, empty at first.
class SimulatedAuthorization final : public Authorization {
  public:
    [[nodiscard]] std::unique_ptr<AuthorizationRef> create() override {
        return failCreating_ ? nullptr : std::make_unique<AuthorizationRef>();
    }

    [[nodiscard]] std::optional<QByteArray> externalForm(const AuthorizationRef& /*ref*/) override {
        return failExternalForm_ ? std::nullopt
                                 : std::optional(QByteArray(externalFormLength, 'q'));
    }

    [[nodiscard]] RightStatus right(const QString& name) override {
        return rules_.contains(name) ? RightStatus::Exists : RightStatus::Missing;
    }

    bool setRight(const AuthorizationRef& /*ref*/, const QString& name, const QString& rule,
                  const QString& /*description*/, const QString& /*table*/) override {
        if (!failSetting_) {
            rules_.insert(name, rule);
        }
        return !failSetting_;
    }

    void setRule(const QString& name, const QString& rule) { rules_.insert(name, rule); }

    [[nodiscard]] const QMap<QString, QString>& rules() const { return rules_; }

    void failCreating() { failCreating_ = true; }

    void failExternalForm() { failExternalForm_ = true; }

    void failSetting() { failSetting_ = true; }

  private:
    QMap<QString, QString> rules_;
    bool failCreating_ = false;
    bool failExternalForm_ = false;
    bool failSetting_ = false;
};

} // namespace quorvane
