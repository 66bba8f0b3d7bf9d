#include "platform/linux/LinuxStatusBar.h"

#include "platform/linux/LinuxStatusItem.h"

#include <utility>

namespace quorvane {

LinuxStatusBar::LinuxStatusBar(const QDBusConnection& sessionBus, LogSink& log, QString imageFolder)
    : bus_(sessionBus), log_(log), imageFolder_(std::move(imageFolder)) {}

std::unique_ptr<StatusItem> LinuxStatusBar::statusItemWithLength(double length) {
    auto item = std::make_unique<LinuxStatusItem>(bus_, log_, imageFolder_);
    item->setLength(length);
    return item;
}

} // namespace quorvane
