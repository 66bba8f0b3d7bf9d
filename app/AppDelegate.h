#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace quorvane {

class MenuController;
class WindowController;

/// The order in which the program starts and quits; nothing else. Main thread only.
class AppDelegate : public QObject {
    Q_OBJECT

  public:
    /// `terminate` ends the program; called once, last of all.
    explicit AppDelegate(std::function<void()> terminate);
    ~AppDelegate() override;

    /// Registers the default settings, before anybody reads one, and makes the first windows.
    /// Returns false when another copy runs: nothing of that is done then, the user is told, and
    /// the program ends when he has read it. `applicationDidFinishLaunching` must not follow.
    [[nodiscard]] bool applicationWillFinishLaunching();

    /// Starts to look for updates, makes the status menu, which brings the controller and the
    /// battery monitor to life, and has the program start at login.
    void applicationDidFinishLaunching();

    /// However the program ends. Nothing is done here: who is ended by force has nothing to say,
    /// and what has to be put back is put back by the platform.
    void applicationWillTerminate() {}

    /// The user quits: everything is put back and stored, then the program ends.
    void quit();

    /// Null until the launch has finished.
    [[nodiscard]] MenuController* menuController() const { return menuController_.get(); }

    [[nodiscard]] WindowController* windowController() const { return windowController_.get(); }

    /// For a monitor of clicks outside of the application's windows; nothing sets it.
    QObject* clickOutMonitor = nullptr;

  private:
    [[nodiscard]] static bool anotherCopyRuns();
    void refuse();

    std::function<void()> terminate_;
    std::unique_ptr<WindowController> windowController_;
    std::unique_ptr<MenuController> menuController_;
};

} // namespace quorvane
