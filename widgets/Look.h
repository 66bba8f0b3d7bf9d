#pragma once

#include <QColor>
#include <QPalette>

namespace quorvane {

/// The colours that a palette does not have, chosen so that they are legible with it.
class Look {
  public:
    /// `palette` is the one of the widget that is painted.
    explicit Look(const QPalette& palette);

    /// Whether the desktop's theme is a dark one: its windows are darker than a middle grey.
    [[nodiscard]] bool isDark() const { return isDark_; }

    /// Of Quorvane's own drawings; at least 4.5:1 against `backdrop`.
    [[nodiscard]] QColor accent() const;

    /// Opaque; what lies under the texts of a translucent window. White in a light theme.
    [[nodiscard]] QColor backdrop() const;

  private:
    QColor window_;
    bool isDark_;
};

} // namespace quorvane
