#pragma once

#include <QWidget>

namespace quorvane {

/// What the X server and the window manager are asked that Qt has no words for. Does nothing, and
/// answers no, on any other display server.
class X11Window {
  public:
    /// Makes the window's native one, if there is none yet. Flags that are changed afterwards make
    /// another one, which knows nothing of what was set here.
    explicit X11Window(QWidget& window);

    /// Whether there is a compositor, and a window manager that blurs what lies behind a window.
    [[nodiscard]] static bool offersBlur();

    /// Asks for blur behind the whole window. Whoever draws it chooses the radius.
    void setBlurBehind();

    /// The window shows on every desktop, not only on the one that it opens on. Before it is shown.
    void setOnAllDesktops();

    /// To the front, with the keyboard, also while another program is in use.
    void activate();

  private:
    quint32 window_;
};

} // namespace quorvane
