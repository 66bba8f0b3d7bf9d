#include "widgets/LayoutWindowController.h"

#include "widgets/LayoutLoader.h"

#include <utility>

namespace quorvane {

LayoutWindowController::LayoutWindowController(QString layoutFile, QObject* parent)
    : QObject(parent), layoutFile_(std::move(layoutFile)) {}

QWidget* LayoutWindowController::window() {
    if (!std::exchange(isLoaded_, true)) {
        LayoutLoader::Result result = LayoutLoader::load(layoutFile_);
        window_ = std::move(result.window);
        error_ = result.error;
    }
    return window_.get();
}

} // namespace quorvane
