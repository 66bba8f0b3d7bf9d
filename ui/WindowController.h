#pragma once

#include <QMetaObject>
#include <QObject>

#include <memory>

namespace quorvane {

class EmailWindowController;
class Window;

/// Decides when the application's few windows appear: the splash once, at the very first start, and
/// a window for the user's e-mail address, which this edition never makes. Main thread only.
class WindowController : public QObject {
    Q_OBJECT

  public:
    WindowController();
    ~WindowController() override;

    /// Loads the splash, and shows it if it never was.
    void configureSplashWindow();
    void showSplashWindow();

    void configureEmailWindow();
    void showEmailWindow();

    /// Not while it is delayed, nor when the user has answered it.
    void showEmailWindowIfAppropriate();

    /// One of the windows that it has shown is being closed.
    void windowWillClose(const Window* window);

    [[nodiscard]] bool delayEmailWindow() const { return delayEmailWindow_; }

    void setDelayEmailWindow(bool delay) { delayEmailWindow_ = delay; }

    /// Null when the bundle has no such layout.
    [[nodiscard]] Window* splashWindow() const { return splashWindow_.get(); }

    /// Null unless `configureEmailWindow` was called.
    [[nodiscard]] EmailWindowController* emailWindowController() const {
        return emailWindowController_.get();
    }

    [[nodiscard]] Window* submitEmailWindow() const { return submitEmailWindow_; }

  private:
    [[nodiscard]] QMetaObject::Connection hearOfClosing(const Window* window);

    bool delayEmailWindow_ = false;
    std::unique_ptr<Window> splashWindow_;
    std::unique_ptr<EmailWindowController> emailWindowController_;
    Window* submitEmailWindow_ = nullptr; // the controller's
    QMetaObject::Connection splashClosing_;
    QMetaObject::Connection emailClosing_;
};

} // namespace quorvane
