#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace quorvane {

/// A message that waits for the user's answer. Texts are final, plain text.
struct Alert {
    QString messageText;
    QString informativeText;
    QStringList buttons; ///< at least one; the first is the one that the Return key presses
    /// The button that counts as pressed when the user closes the alert or never sees it.
    int safeButton = 0;
};

/// A window of a layout of the bundle. Not on the screen until it is ordered to the front. Main
/// thread only.
class Window : public QObject {
    Q_OBJECT

  public:
    /// Shows on every desktop, not only on the one where it was opened.
    static constexpr unsigned canJoinAllSpaces = 1;

    using QObject::QObject;

    /// `canJoinAllSpaces`, or 0.
    virtual void setCollectionBehavior(unsigned behavior) = 0;

    /// Shows it, in front of the other windows of its level, and gives it the keyboard.
    virtual void makeKeyAndOrderFront() = 0;

    /// In the middle of the screen.
    virtual void center() = 0;

    /// How far in front: 0 for ordinary windows, above 0 in front of them.
    virtual void setLevel(int level) = 0;

  Q_SIGNALS:
    /// The user has closed it, or it could not be shown at all.
    void willClose();
};

/// The application's windows. Main thread only.
class Windows {
  public:
    virtual ~Windows() = default;

    /// The window of the bundle's layout of this name; null when there is no such layout.
    [[nodiscard]] virtual std::unique_ptr<Window> loadNibNamed(const QString& name) = 0;

    /// Brings the application's windows in front of those of the application that is in use.
    virtual void activateIgnoringOtherApps() = 0;

    /// Shows the alert and calls `answered` with the index of the pressed button later, never
    /// before this returns. The main loop goes on meanwhile.
    virtual void runModal(const Alert& alert, std::function<void(int button)> answered) = 0;
};

} // namespace quorvane
