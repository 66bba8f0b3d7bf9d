#include "platform/linux/statusitem/LinuxStatusBar.h"

#include <utility>

namespace quorvane {

LinuxStatusBar::LinuxStatusBar(const QDBusConnection& sessionBus, LogSink& log, QString imageFolder)
    : bus_(sessionBus), log_(log), imageFolder_(std::move(imageFolder)) {}

std::unique_ptr<StatusItem> LinuxStatusBar::statusItemWithLength(double length) {
    auto item = std::make_unique<LinuxStatusItem>(bus_, log_, imageFolder_);
    item->setLength(length);
    return item;
}

LinuxStatusItem::LinuxStatusItem(const QDBusConnection& sessionBus, LogSink& log,
                                 const QString& imageFolder)
    : images_(imageFolder, log), item_(sessionBus, imageFolder),
      menu_(sessionBus, StatusNotifierItem::menuPath(), imageFolder),
      registration_(sessionBus, log) {
    if (sessionBus.isConnected() && !item_.isExported()) {
        log.write(QStringLiteral("There is already a status item; a second one is not shown."));
    }
}

void LinuxStatusItem::setMenu(Menu& menu) {
    menu_.setMenu(menu);
    item_.announceMenu();
}

void LinuxStatusItem::setAttributedTitle(const AttributedString& title) {
    item_.setLabel(title.text);
}

void LinuxStatusItem::setImage(const QString& name) {
    if (name != imageName_) {
        imageName_ = name;
        updateIcon();
    }
}

void LinuxStatusItem::setTemplate(bool isTemplate) {
    if (isTemplate != isTemplate_) {
        isTemplate_ = isTemplate;
        updateIcon();
    }
}

void LinuxStatusItem::updateIcon() {
    item_.setIconName(images_.iconName(imageName_, isTemplate_));
}

} // namespace quorvane
