#pragma once

#include <QWidget>

namespace quorvane {

/// A small drawing beside a sentence of the splash window, on a tile of its colour. Decoration: the
/// sentence says it all.
class FeatureGlyph : public QWidget {
    Q_OBJECT
    Q_PROPERTY(Glyph glyph READ glyph WRITE setGlyph)

  public:
    enum Glyph {
        Dim,
        Pause,
        Hide,
        Radio,
        Index,
        Report,
        Turbo,
        PutBack,
        PlugIn,
        Automatic,
        Ask,
        Manual
    };
    Q_ENUM(Glyph)

    explicit FeatureGlyph(QWidget* parent = nullptr);

    [[nodiscard]] Glyph glyph() const { return glyph_; }

    void setGlyph(Glyph glyph);

    [[nodiscard]] QSize sizeHint() const override { return {32, 32}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Glyph glyph_ = Dim;
};

} // namespace quorvane
