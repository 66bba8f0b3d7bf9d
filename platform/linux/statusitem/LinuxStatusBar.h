#pragma once

#include "platform/Log.h"
#include "platform/StatusBar.h"

#include <QDBusConnection>
#include <QString>

namespace quorvane {

/// The bars of the desktop on a session bus. One item at a time.
class LinuxStatusBar final : public StatusBar {
  public:
    /// `imageFolder` is the one with the bundle's status images.
    LinuxStatusBar(const QDBusConnection& sessionBus, LogSink& log, QString imageFolder);

    [[nodiscard]] std::unique_ptr<StatusItem> statusItemWithLength(double length) override;

  private:
    QDBusConnection bus_;
    LogSink& log_;
    QString imageFolder_;
};

} // namespace quorvane
