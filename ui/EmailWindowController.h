#pragma once

#include "platform/Windows.h"

#include <memory>

namespace quorvane {

/// Holds the window in which a user leaves his address. Main thread only.
class EmailWindowController {
  public:
    /// Loads the window. Null windows of a layout that is not there are no error.
    EmailWindowController();

    [[nodiscard]] Window* window() const { return window_.get(); }

  private:
    std::unique_ptr<Window> window_;
};

} // namespace quorvane
