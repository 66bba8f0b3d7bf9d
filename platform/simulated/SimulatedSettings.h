#pragma once

#include "platform/Settings.h"

#include <map>
#include <memory>

namespace quorvane {

/// A settings domain in memory. Keeps text where a settings file would, so that readers have to
/// convert.
class SimulatedSettingsDomain final : public SettingsDomain {
    Q_OBJECT

  public:
    using SettingsDomain::SettingsDomain;

    [[nodiscard]] QVariant value(const QString& key) const override;
    bool write(const QString& key, const QVariant& value) override;

    [[nodiscard]] QString location() const override {
        return QStringLiteral("/home/user/.config/com.TarnwickStudios.quorvane.conf");
    }

    bool synchronize() override { return !failing_; }

    /// As if another process, or the user in an editor, had written.
    void writeFromElsewhere(const QString& key, const QVariant& value);

    /// From now on nothing can be written.
    void setFailing(bool failing) { failing_ = failing; }

    /// How often this process has written the key.
    [[nodiscard]] int writes(const QString& key) const { return writes_.value(key); }

  private:
    void store(const QString& key, const QVariant& value);

    QVariantMap values_;
    QMap<QString, int> writes_;
    bool failing_ = false;
};

class SimulatedSettings final : public Settings {
  public:
    SimulatedSettingsDomain& domain(const QString& name) override;

  private:
    std::map<QString, std::unique_ptr<SimulatedSettingsDomain>> domains_;
};

} // namespace quorvane
