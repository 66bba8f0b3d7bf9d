#pragma once

#include <QObject>

namespace quorvane {

/// An object of a layout. It does nothing by itself.
class DebugMenu : public QObject {
    Q_OBJECT

  public:
    explicit DebugMenu(QObject* parent = nullptr);
};

} // namespace quorvane
