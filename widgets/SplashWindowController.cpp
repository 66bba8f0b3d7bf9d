#include "apps/window/SplashWindowController.h"

namespace quorvane {

SplashWindowController::SplashWindowController(QObject* parent) : QObject(parent) {}

} // namespace quorvane
