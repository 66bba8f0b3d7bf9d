#pragma once

#include "platform/Log.h"
#include "platform/StatusBar.h"
#include "platform/linux/DBusMenu.h"
#include "platform/linux/StatusImages.h"
#include "platform/linux/StatusNotifierItem.h"
#include "platform/linux/StatusNotifierRegistration.h"

#include <QDBusConnection>

namespace quorvane {

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
