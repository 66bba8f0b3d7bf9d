#pragma once

#include <QObject>

#include <functional>

namespace quorvane {

/// The order in which the program starts and quits; nothing else. Main thread only.
class AppDelegate : public QObject {
    Q_OBJECT

  public:
    /// `terminate` ends the program; called once, last of all.
    explicit AppDelegate(std::function<void()> terminate);

    /// Registers the default settings. Nothing reads a setting before.
    void applicationWillFinishLaunching();

    /// Brings the controller and the battery monitor to life and makes the first decision.
    void applicationDidFinishLaunching();

    /// The user quits: everything is put back and stored, then the program ends.
    void quit();

  private:
    std::function<void()> terminate_;
};

} // namespace quorvane
