#pragma once

#include "platform/Log.h"

#include <QSet>
#include <QString>

namespace quorvane {

/// The folder with the bundle's status images. An image "battery-on-60" lies there once under its
/// own name and once under the name that hosts should take it by:
///   quorvane_battery_on_60            in its own colours
///   quorvane_battery_on_60-symbolic   a stencil
/// Desktops draw icons of the second kind in their own colour; GTK fills every shape of one, so
/// lines have to be shapes. Hosts that do not find an icon in the user's theme at once leave the
/// last words of its name away, at each "-", before they look into this folder: under its own name
/// a gauge would show as the theme's "battery". The image's own name serves where the other file is
/// not there. Main thread only.
class StatusImages {
  public:
    StatusImages(QString folder, LogSink& log);

    /// What a host finds the image by, or an empty string when it is not there, which the log tells
    /// once.
    [[nodiscard]] QString iconName(const QString& imageName, bool isTemplate);

  private:
    [[nodiscard]] bool contains(const QString& name) const;
    void reportMissing(const QString& imageName);

    QString folder_;
    LogSink& log_;
    QSet<QString> reported_;
};

} // namespace quorvane
