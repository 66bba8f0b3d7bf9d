#pragma once

#include "platform/Opener.h"

#include <QObject>
#include <QString>

namespace quorvane {

class LogSink;

/// Opens addresses through xdg-open, which knows the desktops and what their users have chosen.
class LinuxOpener final : public Opener {
  public:
    /// `log` must outlive this.
    explicit LinuxOpener(LogSink& log) : log_(log) {}

    void openURL(const QUrl& url) override;

  private:
    void complain(const QString& address, const QString& reason);

    LogSink& log_;
    QObject processes_; ///< parent of what is being started
};

} // namespace quorvane
