#pragma once

#include "apps/demo/Canvas.h"
#include "apps/demo/Charset.h"
#include "apps/demo/TerminalTraits.h"

#include <QByteArray>

#include <optional>

namespace quorvane {

/// Turns pictures into what a terminal has to be sent. Only what differs from the picture before
/// is sent, so that nothing flickers and a picture that stands still costs nothing.
class AnsiPainter {
  public:
    AnsiPainter(Charset charset, ColorDepth depth);

    /// What turns the last painted picture into this one; empty when they are alike.
    [[nodiscard]] QByteArray paint(const Canvas& canvas);

    /// The terminal shows something else meanwhile: the next picture is painted whole.
    void forget() { last_.reset(); }

  private:
    void paintRow(QByteArray& bytes, const Canvas& canvas, int row) const;
    [[nodiscard]] QByteArray sequence(const Style& style) const;
    [[nodiscard]] QByteArray colorCode(Rgb color, bool background) const;

    Charset charset_;
    ColorDepth depth_;
    std::optional<Canvas> last_;
};

} // namespace quorvane
