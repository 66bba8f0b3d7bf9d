#pragma once

#include <QUrl>

namespace quorvane {

/// Hands over to the programs that the user has chosen. Main thread only.
class Opener {
  public:
    virtual ~Opener() = default;

    /// Has the user's own program for such addresses open it. A failure is logged.
    virtual void openURL(const QUrl& url) = 0;
};

} // namespace quorvane
