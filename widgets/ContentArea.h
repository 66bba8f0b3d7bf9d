#pragma once

#include <QScrollArea>

namespace quorvane {

/// Content that is shown whole where the screen has room for it, and scrolls where it has not.
class ContentArea : public QScrollArea {
    Q_OBJECT

  public:
    explicit ContentArea(QWidget* parent = nullptr);

    [[nodiscard]] bool hasHeightForWidth() const override;
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
};

} // namespace quorvane
