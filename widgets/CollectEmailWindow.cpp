#include "apps/window/CollectEmailWindow.h"

namespace quorvane {

CollectEmailWindow::CollectEmailWindow(QWidget* parent) : QWidget(parent, Qt::Window) {}

} // namespace quorvane
