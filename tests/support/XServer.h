#pragma once

#include "tests/support/Daemon.h"

#include <QString>
#include <QTemporaryDir>

namespace quorvane::test {

/// An X server without a screen. One at a time in a process.
class XServer {
  public:
    /// Starts it and waits until it can be connected to. Puts it into the test's environment as
    /// DISPLAY, and takes WAYLAND_DISPLAY out, so that children use no other. Needs Xvfb.
    XServer();

    /// Whether Xvfb is installed.
    [[nodiscard]] static bool isAvailable();

    [[nodiscard]] bool isRunning() const { return !display_.isEmpty() && daemon_.isRunning(); }

    /// For example ":1234"; empty when it could not be started.
    [[nodiscard]] QString display() const { return display_; }

    /// As a crash.
    void kill() { daemon_.kill(); }

    /// Another server on the same display, once this one has ended. Returns whether it listens.
    bool restart();

  private:
    [[nodiscard]] bool start(const QString& display);

    QTemporaryDir folder_;
    Daemon daemon_;
    QString display_;
};

} // namespace quorvane::test
