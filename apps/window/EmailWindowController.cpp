#include "apps/window/EmailWindowController.h"

namespace quorvane {

void EmailWindowController::windowDidLoad() {
    LayoutWindowController::windowDidLoad();
}

} // namespace quorvane
