#pragma once

#include "platform/Bundle.h"

#include <QMap>
#include <QStringList>

#include <algorithm>

namespace quorvane {

class SimulatedBundle final : public Bundle {
  public:
    [[nodiscard]] QString identifier() const override { return identifier_; }

    [[nodiscard]] std::optional<QByteArray> resource(const QString& name,
                                                     const QString& type) const override {
        const auto found = resources_.constFind(name + QLatin1Char('.') + type);
        return found == resources_.constEnd() ? std::nullopt : std::optional(*found);
    }

    /// A resource is there when it, or something in it, was set.
    [[nodiscard]] std::optional<QString> pathForResource(const QString& name,
                                                         const QString& type) const override {
        const QString file = name + QLatin1Char('.') + type;
        const auto isIn = [&file](const QString& each) {
            return each == file || each.startsWith(file + QLatin1Char('/'));
        };
        const QStringList names = resources_.keys();
        return std::any_of(names.begin(), names.end(), isIn)
                   ? std::optional(bundleURL().path() + QStringLiteral("/Contents/Resources/") +
                                   file)
                   : std::nullopt;
    }

    [[nodiscard]] QUrl bundleURL() const override {
        return QUrl::fromLocalFile(QStringLiteral("/opt/Quorvane.app"));
    }

    [[nodiscard]] QVariantMap infoDictionary() const override { return info; }

    QVariantMap info{{QStringLiteral("CFBundleShortVersionString"), QStringLiteral("0.1")},
                     {QStringLiteral("CFBundleVersion"), QStringLiteral("1")}};

    void setIdentifier(const QString& identifier) { identifier_ = identifier; }

    /// By its path in the resources, for example "List.plist" or "Folder.kext/Contents/Info.plist".
    void setResource(const QString& fileName, const QByteArray& data) {
        resources_.insert(fileName, data);
    }

    void clearResources() { resources_.clear(); }

  private:
    QString identifier_ = QStringLiteral("com.TarnwickStudios.quorvane");
    QMap<QString, QByteArray> resources_;
};

} // namespace quorvane
