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

    void setIdentifier(const QString& identifier) { identifier_ = identifier; }

    void setResource(const QString& fileName, const QByteArray& data) {
        resources_.insert(fileName, data);
    }

  private:
    QString identifier_ = QStringLiteral("com.TarnwickStudios.quorvane");
    QMap<QString, QByteArray> resources_;
};

} // namespace quorvane
