#pragma once

#include "platform/Result.h"

#include <QObject>
#include <QString>

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
    std::int32_t processIdentifier = 0; ///< of its main process; 0: not known here
    QString bundleIdentifier;           ///< empty: it has none
    QString localizedName;              ///< for the user, in his language
    ActivationPolicy activationPolicy = ActivationPolicy::Regular;
    bool isActive = false; ///< the user works with it: it is in front

    /// Whether both tell of one application: of one process, or where the process is not known, of
    /// one identifier.
    [[nodiscard]] bool isSameAs(const RunningApplication& other) const {
        return processIdentifier == other.processIdentifier &&
               (processIdentifier != 0 || bundleIdentifier == other.bundleIdentifier);
    }

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

    /// Whether the front is known in this session and its changes are told, or why not: a few words
    /// for the user. Where it is not, `isActive` says nothing of an application.
    [[nodiscard]] virtual Result<Done> tellsFront() const = 0;

    /// Whether `hide` does anything in this session, or why not.
    [[nodiscard]] virtual Result<Done> canHide() const = 0;

    /// Takes every window of the application from the screen, as its user can.
    virtual void hide(const RunningApplication& application) = 0;

    /// Asks the application to quit, as its user would. It may ask him what to do with his work,
    /// and may stay.
    virtual void terminate(const RunningApplication& application) = 0;

  Q_SIGNALS:
    /// The application has come to the front, or has left it for another one or for none.
    void didActivateApplication(const quorvane::RunningApplication& application);
    void didDeactivateApplication(const quorvane::RunningApplication& application);
};

} // namespace quorvane
