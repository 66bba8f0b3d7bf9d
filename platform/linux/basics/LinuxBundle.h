#pragma once

#include "platform/Bundle.h"

namespace quorvane {

/// The relocatable folder that the program was started from: the executable lies in
/// <bundle>/Contents/Linux, its description in Contents/Info.plist, resources in
/// Contents/Resources.
class LinuxBundle final : public Bundle {
  public:
    /// `contentsFolder` without a trailing slash.
    explicit LinuxBundle(QString contentsFolder);

    /// The bundle of the running executable.
    [[nodiscard]] static QString contentsFolderOfThisProgram();

    [[nodiscard]] QString identifier() const override;

    [[nodiscard]] QUrl bundleURL() const override;

    [[nodiscard]] QVariantMap infoDictionary() const override { return info_; }

    [[nodiscard]] const QString& contentsFolder() const { return contentsFolder_; }

    [[nodiscard]] std::optional<QByteArray> resource(const QString& name,
                                                     const QString& type) const override;

    [[nodiscard]] std::optional<QString> pathForResource(const QString& name,
                                                         const QString& type) const override;

  private:
    [[nodiscard]] QString resourcePath(const QString& name, const QString& type) const;

    QString contentsFolder_;
    QVariantMap info_; ///< empty outside a bundle
};

} // namespace quorvane
