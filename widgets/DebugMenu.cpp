#include "widgets/DebugMenu.h"

namespace quorvane {

DebugMenu::DebugMenu(QObject* parent) : QObject(parent) {}

} // namespace quorvane
