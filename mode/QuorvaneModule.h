#pragma once

#include "core/ObservableObject.h"

#include <QStringList>

#include <cstdint>
#include <memory>
#include <vector>

namespace quorvane {

struct UserNotification;

/// One way of saving power. A module runs exactly while its own setting and Low Power Mode are both
/// on. Whoever owns it tells it whether the mode is on (`updateRunning`); one that nobody has told
/// never runs.
///
/// A subclass overrides `activate` and `deactivate`, and where it has settings of its own `init`
/// (calling the inherited one first, then binding them). Main thread only.
class QuorvaneModule : public ObservableObject {
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled)

  public:
    using ObservableObject::ObservableObject;

    /// Binds the module to its settings. Called once, right after construction, because the name of
    /// the setting is the name of the finished object's class.
    virtual void init();

    /// Reacts to a change of a property that the module observes of itself: of "enabled", by
    /// `updateRunning` with what it was told last.
    virtual void observeValue(const Change& change);

    void toggleEnabled();

    /// What the module does, in a few words; what to draw for it.
    [[nodiscard]] virtual QString label() const;
    [[nodiscard]] virtual QString imageName() const;

    /// The name of the class, without its namespace. Part of the settings' names.
    [[nodiscard]] QString identifier() const;

    /// The key of the module's own setting.
    [[nodiscard]] QString enabledSetting() const;

    /// Start and stop the subclass's work. Returning false means that it did not work out: the
    /// module keeps its state and is asked again at the next evaluation.
    virtual bool activate();
    virtual bool deactivate();

    /// Activates or deactivates the module if that is due, now that the mode is on or off. Told the
    /// same again, it tries once more what did not work out.
    void updateRunning(bool modeIsOn);

    /// Whether the last successful switch was an activation. Changes without announcement.
    [[nodiscard]] bool running() const { return running_; }

    /// The tool's standard output as UTF-8. Blocks for as long as the tool runs, looked at once a
    /// second; after 15 seconds the tool is terminated.
    QString runCommand(const QString& launchPath, const QStringList& arguments);

    /// Stops or resumes the application with this main process, later, from the main queue. Always
    /// true.
    bool setAppPausedWithPID(bool paused, std::int32_t pid);

    /// The same for the first running application with this bundle identifier. False when none
    /// runs.
    bool setAppPausedWithIdentifier(bool paused, const QString& identifier);

    /// The user has clicked a notification whose user info names this module.
    virtual void recieveNotification(const UserNotification& notification);

    /// The user's setting for this module.
    [[nodiscard]] bool enabled() const { return enabled_; }

    void setEnabled(bool enabled);

  private:
    bool modeIsOn_ = false; ///< as it was told last
    bool running_ = false;
    bool enabled_ = false;
};

/// Shared, because a module may be a shared instance as well.
using ModuleList = std::vector<std::shared_ptr<QuorvaneModule>>;

/// A module of class M, ready for use.
template <class M>
[[nodiscard]] std::unique_ptr<M> makeModule() {
    auto module = std::make_unique<M>();
    module->init();
    return module;
}

} // namespace quorvane
