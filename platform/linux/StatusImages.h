#pragma once

#include "platform/Log.h"

#include <QSet>
#include <QString>

namespace quorvane {

/// The folder with the bundle's status images. Main thread only.
class StatusImages {
  public:
    StatusImages(QString folder, LogSink& log);

    [[nodiscard]] const QString& folder() const { return folder_; }

    /// What a host finds the image by, or an empty string when it is not there, which the log tells
    /// once. A stencil is taken from NAME-symbolic where there is one, because desktops draw icons
    /// of such names in their own colour.
    [[nodiscard]] QString iconName(const QString& imageName, bool isTemplate);

  private:
    [[nodiscard]] bool contains(const QString& name) const;
    void reportMissing(const QString& imageName);

    QString folder_;
    LogSink& log_;
    QSet<QString> reported_;
};

} // namespace quorvane
