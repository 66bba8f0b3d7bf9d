#pragma once

#include "platform/Pasteboard.h"
#include "platform/Windows.h"

#include <QString>

#include <memory>

namespace quorvane {

class LogSink;
class WindowProcess;

/// Windows, alerts and the clipboard through the program of the bundle that is linked with a
/// toolkit, as this one must not be: a toolkit wakes its program at every key and click of the
/// user.
class LinuxWindows final : public Windows, public Pasteboard {
  public:
    /// `contentsFolder` is the bundle's. `log` must outlive this.
    LinuxWindows(const QString& contentsFolder, LogSink& log);
    ~LinuxWindows() override;
    LinuxWindows(const LinuxWindows&) = delete;
    LinuxWindows& operator=(const LinuxWindows&) = delete;

    /// The layout is the file Resources/<name>.ui of the bundle.
    [[nodiscard]] std::unique_ptr<Window> loadNibNamed(const QString& name) override;

    /// Windows come to the front by themselves here.
    void activateIgnoringOtherApps() override {}

    /// One that cannot be shown is answered with its safe button and logged.
    void runModal(const Alert& alert, std::function<void(int button)> answered) override;

    void setString(const QString& text) override;

  private:
    QString program_;
    QString resources_;
    LogSink& log_;
    QObject processes_; ///< parent of the alerts that wait
    std::unique_ptr<WindowProcess> clipboard_;
};

} // namespace quorvane
