#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QVariantMap>

#include <optional>

namespace quorvane {

/// The bundle that the running program belongs to. Any thread.
class Bundle {
  public:
    virtual ~Bundle() = default;

    /// For example "com.TarnwickStudios.quorvane".
    [[nodiscard]] virtual QString identifier() const = 0;

    /// Where the bundle lies.
    [[nodiscard]] virtual QUrl bundleURL() const = 0;

    /// The bundle's own description, by keys such as "CFBundleVersion".
    [[nodiscard]] virtual QVariantMap infoDictionary() const = 0;

    /// The contents of a file of the bundle's resources, or nothing when there is no such file.
    /// `type` is the file's extension without the dot.
    [[nodiscard]] virtual std::optional<QByteArray> resource(const QString& name,
                                                             const QString& type) const = 0;

    /// The full path of a file or folder of the bundle's resources, or nothing when there is none.
    [[nodiscard]] virtual std::optional<QString> pathForResource(const QString& name,
                                                                 const QString& type) const = 0;
};

} // namespace quorvane
