#pragma once

#include "apps/window/LayoutWindowController.h"

namespace quorvane {

/// Controls the window that asks for an e-mail address.
class EmailWindowController : public LayoutWindowController {
    Q_OBJECT

  public:
    using LayoutWindowController::LayoutWindowController;

  protected:
    void windowDidLoad() override;
};

} // namespace quorvane
