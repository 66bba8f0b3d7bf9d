#pragma once

#include "platform/Windows.h"
#include "platform/linux/windows/WindowProcess.h"

#include <memory>

namespace quorvane {

class LogSink;

/// A window in a process of its own, which runs as long as the window is open.
class LinuxWindow final : public Window {
    Q_OBJECT

  public:
    /// `layoutFile` is what the process loads. `log` must outlive this.
    LinuxWindow(QString program, QString layoutFile, LogSink& log);

    void setCollectionBehavior(unsigned behavior) override { behavior_ = behavior; }

    /// What is set later within the same turn of the main loop counts too.
    void makeKeyAndOrderFront() override;

    void center() override { isCentered_ = true; }

    void setLevel(int level) override { level_ = level; }

  private:
    void open();
    void ended(const QString& error);

    QString program_;
    QString layoutFile_;
    LogSink& log_;
    unsigned behavior_ = 0;
    int level_ = 0;
    bool isCentered_ = false;
    std::unique_ptr<WindowProcess> process_; ///< from ordering to the front until it is closed
};

} // namespace quorvane
