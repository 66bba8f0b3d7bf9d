#include "platform/linux/basics/LinuxBundle.h"

#include "plist/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <utility>

namespace quorvane {

namespace {

std::optional<QByteArray> contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

QVariantMap infoIn(const QString& infoFile) {
    const std::optional<QByteArray> info = contentsOf(infoFile);
    const PropertyListResult list = info ? readPropertyList(*info) : PropertyListResult{};
    return list.value ? list.value->toMap() : QVariantMap();
}

} // namespace

LinuxBundle::LinuxBundle(QString contentsFolder)
    : contentsFolder_(std::move(contentsFolder)),
      info_(infoIn(contentsFolder_ + QStringLiteral("/Info.plist"))) {}

QString LinuxBundle::contentsFolderOfThisProgram() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/.."));
}

QString LinuxBundle::identifier() const {
    return info_.value(QStringLiteral("CFBundleIdentifier")).toString();
}

QUrl LinuxBundle::bundleURL() const {
    return QUrl::fromLocalFile(QDir::cleanPath(contentsFolder_ + QStringLiteral("/..")));
}

std::optional<QByteArray> LinuxBundle::resource(const QString& name, const QString& type) const {
    return contentsOf(resourcePath(name, type));
}

std::optional<QString> LinuxBundle::pathForResource(const QString& name,
                                                    const QString& type) const {
    const QString path = resourcePath(name, type);
    return QFile::exists(path) ? std::optional(path) : std::nullopt;
}

QString LinuxBundle::resourcePath(const QString& name, const QString& type) const {
    return QStringLiteral("%1/Resources/%2.%3").arg(contentsFolder_, name, type);
}

} // namespace quorvane
