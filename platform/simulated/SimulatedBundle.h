#pragma once

#include "platform/Bundle.h"

#include <QMap>

namespace quorvane {

class SimulatedBundle final : public Bundle {
  public:
    [[nodiscard]] QString identifier() const override { return identifier_; }

    [[nodiscard]] std::optional<QByteArray> resource(const QString& name,
                                                     const QString& type) const override {
        const auto found = resources_.constFind(name + QLatin1Char('.') + type);
        return found == resources_.constEnd() ? std::nullopt : std::optional(*found);
    }

    [[nodiscard]] QUrl bundleURL() const override {
        return QUrl::fromLocalFile(QStringLiteral("/opt/Quorvane.app"));
    }

    [[nodiscard]] QVariantMap infoDictionary() const override { return info; }

    QVariantMap info{{QStringLiteral("CFBundleShortVersionString"), QStringLiteral("0.1")},
                     {QStringLiteral("CFBundleVersion"), QStringLiteral("1")}};

    void setIdentifier(const QString& identifier) { identifier_ = identifier; }

    void setResource(const QString& fileName, const QByteArray& data) {
        resources_.insert(fileName, data);
    }

  private:
    QString identifier_ = QStringLiteral("com.TarnwickStudios.quorvane");
    QMap<QString, QByteArray> resources_;
};

} // namespace quorvane
