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
    /// once. A stencil is taken from quorvane-NAME-symbolic where there is one: desktops draw icons
    /// whose names end so in their own colour, and some take an icon of the desktop's theme whose
    /// name is the beginning of ours ("battery") before they look into this folder.
    [[nodiscard]] QString iconName(const QString& imageName, bool isTemplate);

  private:
    [[nodiscard]] bool contains(const QString& name) const;
    void reportMissing(const QString& imageName);

    QString folder_;
    LogSink& log_;
    QSet<QString> reported_;
};

} // namespace quorvane
