#pragma once

#include "platform/Result.h"
#include "platform/linux/applications/SessionWindow.h"

#include <QObject>
#include <QString>

#include <vector>

namespace quorvane {

/// The windows of the user's session, as its display server tells of them. One class for each kind
/// of server; what the applications behind the windows are is found out elsewhere. Main thread
/// only.
///
/// Nothing here waits for the server once it is open, and nothing wakes the program but changes of
/// the list and of the active window.
class WindowList : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Begins to look, now or as soon as there is a server. Called once; may take a few round
    /// trips.
    virtual void open() = 0;

    /// Oldest first, without those that are known to belong to no application of this machine. None
    /// while there is no server.
    [[nodiscard]] virtual std::vector<SessionWindow> windows() const = 0;

    /// The one that the user works in. It may name a window that is not listed, for a moment or
    /// because nobody's windows are left out; then nobody is in front.
    [[nodiscard]] virtual WindowId activeWindow() const = 0;

    /// Takes a window from the screen, as its user can. Does nothing where `canHide` says so.
    virtual void hide(WindowId window) = 0;

    /// Asks a window to close, as its user would.
    virtual void close(WindowId window) = 0;

    /// Whether every change of the front is told, or why not: a few words for the user's log.
    [[nodiscard]] virtual Result<Done> tellsFront() const = 0;

    /// Whether windows can be hidden, or why not.
    [[nodiscard]] virtual Result<Done> canHide() const = 0;

    /// Which windows of the session are not in the list, as a sentence for the log. Empty: all are.
    [[nodiscard]] virtual QString leavesOut() const = 0;

  Q_SIGNALS:
    /// The windows, or the active one, are not what they were.
    void changed();

    /// No windows can be seen, for now at least.
    void unavailable(const QString& why);
};

} // namespace quorvane
