#pragma once

#include "platform/Authorization.h"

#include <QList>
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

    int executeWithPrivileges(const AuthorizationRef& /*ref*/, const QString& tool,
                              const QStringList& arguments) override {
        executed_.append(QStringList{tool} + arguments);
        return statuses_.value(tool, 0);
    }

    void setRule(const QString& name, const QString& rule) { rules_.insert(name, rule); }

    [[nodiscard]] const QMap<QString, QString>& rules() const { return rules_; }

    /// What was to be started as the administrator, each with its arguments, in order.
    [[nodiscard]] const QList<QStringList>& executed() const { return executed_; }

    /// The status with which this tool is not started.
    void failExecuting(const QString& tool, int status) { statuses_.insert(tool, status); }

    void failCreating() { failCreating_ = true; }

    void failExternalForm() { failExternalForm_ = true; }

    void failSetting() { failSetting_ = true; }

  private:
    QMap<QString, QString> rules_;
    QList<QStringList> executed_;
    QMap<QString, int> statuses_;
    bool failCreating_ = false;
    bool failExternalForm_ = false;
    bool failSetting_ = false;
};

} // namespace quorvane
