#pragma once

#include <QWidget>

namespace quorvane {

/// Brings the texts of a layout into the user's language.
class LayoutTranslator {
  public:
    /// Replaces every text of the window and of what is in it, among them the ones for screen
    /// readers, by its translation; the English text of the layout is the key.
    static void translate(QWidget& window);
};

} // namespace quorvane
