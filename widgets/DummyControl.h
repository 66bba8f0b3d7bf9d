#pragma once

#include <QWidget>

namespace quorvane {

/// A transparent control: a press reaches the view beneath and triggers an action too.
class DummyControl : public QWidget {
    Q_OBJECT

  public:
    using QWidget::QWidget;

  Q_SIGNALS:
    /// After the view beneath has had the press.
    void triggered();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
};

} // namespace quorvane
