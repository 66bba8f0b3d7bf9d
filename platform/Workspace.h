#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <optional>
#include <vector>

namespace quorvane {

/// How much of an application its user sees. The numbers are those of filters and settings.
enum class ActivationPolicy {
    Regular = 0,    ///< has an ordinary window
    Accessory = 1,  ///< is known to run, without such a window
    Prohibited = 2, ///< runs in the background alone
};

/// An application that runs in the user's session.
struct RunningApplication {
    std::int32_t processIdentifier = 0; ///< of its main process
    QString bundleIdentifier;           ///< empty: it has none
    QString localizedName;              ///< for the user, in his language
    ActivationPolicy activationPolicy = ActivationPolicy::Regular;
    bool isActive = false; ///< the user works with it: it is in front

    [[nodiscard]] bool operator==(const RunningApplication&) const = default;
};

/// The applications of the user's session. What tells of them may be called from any thread; the
/// rest, and the signals, on the main thread only. Where applications cannot be seen there are
/// none.
class Workspace : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// In the order in which they came.
    [[nodiscard]] virtual std::vector<RunningApplication> runningApplications() const = 0;

    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    [[nodiscard]] std::vector<RunningApplication>
    runningApplicationsWithBundleIdentifier(const QString& bundleIdentifier) const;

    /// How many copies of the edition of Quorvane with this bundle identifier run; this program
    /// counts itself. Main thread only.
    [[nodiscard]] virtual int runningCopies(const QString& bundleIdentifier) const = 0;

    /// Takes every window of the application from the screen, as its user can.
    virtual void hide(const RunningApplication& application) = 0;

    /// Asks the application to quit, as its user would. It may ask him what to do with his work,
    /// and may stay.
    virtual void terminate(const RunningApplication& application) = 0;

    /// Has the user's own program for such addresses open it. A failure is logged.
    virtual void openURL(const QUrl& url) = 0;

  Q_SIGNALS:
    /// The application has come to the front, or has left it for another one or for none.
    void didActivateApplication(const quorvane::RunningApplication& application);
    void didDeactivateApplication(const quorvane::RunningApplication& application);

    /// The machine is about to sleep. It waits, for some seconds at most, until every slot has
    /// returned and the helper has answered what they asked of it. Never sent where nobody tells.
    void willSleep();

    /// The machine has woken up again; once after each `willSleep`.
    void didWake();
};

} // namespace quorvane
