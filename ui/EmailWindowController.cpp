#include "ui/EmailWindowController.h"

#include "platform/Platform.h"

namespace quorvane {

EmailWindowController::EmailWindowController()
    : window_(platform().windows().loadNibNamed(QStringLiteral("CollectEmailWindow"))) {}

} // namespace quorvane
