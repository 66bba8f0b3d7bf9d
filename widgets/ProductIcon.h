#pragma once

#include <QWidget>

namespace quorvane {

/// Quorvane's picture: the sign of Low Power Mode, charged, on a green tile. Square, as large as
/// there is room.
class ProductIcon : public QWidget {
    Q_OBJECT

  public:
    explicit ProductIcon(QWidget* parent = nullptr);

    /// The same for a window's icon. `size` in pixels.
    [[nodiscard]] static QPixmap pixmap(int size);

    [[nodiscard]] QSize sizeHint() const override { return {72, 72}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
