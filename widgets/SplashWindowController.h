#pragma once

#include <QObject>

namespace quorvane {

/// An object of the splash window's layout. It does nothing by itself.
class SplashWindowController : public QObject {
    Q_OBJECT

  public:
    explicit SplashWindowController(QObject* parent = nullptr);
};

} // namespace quorvane
