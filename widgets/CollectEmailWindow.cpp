#include "widgets/CollectEmailWindow.h"

namespace quorvane {

CollectEmailWindow::CollectEmailWindow(QWidget* parent) : QWidget(parent, Qt::Window) {}

} // namespace quorvane
