#include "apps/window/DebugMenu.h"

namespace quorvane {

DebugMenu::DebugMenu(QObject* parent) : QObject(parent) {}

} // namespace quorvane
