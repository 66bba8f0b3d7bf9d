#pragma once

#include "platform/linux/common/FileWatch.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace quorvane {

/// Tells when it is worth trying to connect to an X server that is not there: a few times now, and
/// a few times whenever its socket has been made or touched. Otherwise it sleeps. Main thread only.
class X11ServerWatch final : public QObject {
    Q_OBJECT

  public:
    explicit X11ServerWatch(const QString& socketPath);

  Q_SIGNALS:
    void worthATry();

  private:
    void begin();
    void attempt();

    FileWatch socket_;
    QTimer timer_;
    int attempts_ = 0; ///< since the socket was touched last
};

} // namespace quorvane
