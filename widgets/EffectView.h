#pragma once

#include <QWidget>

namespace quorvane {

/// The tinted glass of a window whose background the window manager blurs. It blends with what lies
/// behind the window, and looks the same whether the window is in use or not. As large as its
/// parent, whatever size that gets.
class EffectView : public QWidget {
    Q_OBJECT

  public:
    enum class Material { light = 1 };
    Q_ENUM(Material)

    /// Lies below all the other children that the parent has now.
    explicit EffectView(QWidget& parent);

    [[nodiscard]] static Material material() { return Material::light; }

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
