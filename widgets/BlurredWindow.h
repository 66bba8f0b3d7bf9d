#pragma once

#include <QWidget>

namespace quorvane {

/// A window with a translucent background. Where the window manager blurs what lies behind a
/// window, an effect view is the background, and the content takes the place of the title bar.
/// Elsewhere the background is white (in a dark theme: the theme's own window colour) and lets a
/// twentieth of what lies behind shine through.
///
/// The Escape key closes it, Return presses its default button.
class BlurredWindow : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int blurRadius READ blurRadius)

  public:
    enum class Background { chosenByWindowManager, effect, translucent };

    explicit BlurredWindow(QWidget* parent = nullptr,
                           Background background = Background::chosenByWindowManager);

    /// Gives it the background. Once, when all of its content is there, and before it is shown.
    void awakeFromLayout();

    /// Pixels of blur that were asked for behind the window; 0 with the effect view, which brings
    /// its own.
    [[nodiscard]] int blurRadius() const { return blurRadius_; }

    /// What is painted where there is no effect view. Not valid with it.
    [[nodiscard]] QColor backgroundColor() const;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    [[nodiscard]] bool hasEffect() const;
    void insertEffectView();
    void becomeTranslucent();

    Background background_;
    int blurRadius_ = 0;
};

} // namespace quorvane
