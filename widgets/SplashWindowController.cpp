#include "widgets/SplashWindowController.h"

namespace quorvane {

SplashWindowController::SplashWindowController(QObject* parent) : QObject(parent) {}

} // namespace quorvane
