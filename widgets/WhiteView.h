#pragma once

#include <QFrame>

namespace quorvane {

/// A view on opaque white, in every theme.
class WhiteView : public QFrame {
    Q_OBJECT

  public:
    using QFrame::QFrame;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
