#pragma once

#include "platform/Log.h"
#include "platform/StatusBar.h"
#include "platform/linux/statusitem/DBusMenu.h"
#include "platform/linux/statusitem/StatusImages.h"
#include "platform/linux/statusitem/StatusNotifierItem.h"
#include "platform/linux/statusitem/StatusNotifierRegistration.h"

#include <QDBusConnection>
#include <QString>

#include <memory>

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

/// An item of the desktop's bar over D-Bus: StatusNotifierItem with a menu. The hosts decide on its
/// length, on the font and on the side of the text.
class LinuxStatusItem final : public StatusItem {
  public:
    LinuxStatusItem(const QDBusConnection& sessionBus, LogSink& log, const QString& imageFolder);

    void setMenu(Menu& menu) override;
    void setAttributedTitle(const AttributedString& title) override;

    void setLength(double /*length*/) override {}

    void setImage(const QString& name) override;
    void setTemplate(bool isTemplate) override;

    void setImagePosition(ImagePosition position) override { imagePosition_ = position; }

  private:
    void updateIcon();

    StatusImages images_;
    QString imageName_;
    bool isTemplate_ = false;
    ImagePosition imagePosition_ = ImagePosition::Right;
    StatusNotifierItem item_;
    DBusMenu menu_;
    StatusNotifierRegistration registration_;
};

} // namespace quorvane
