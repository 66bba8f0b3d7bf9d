#pragma once

#include "mode/QuorvaneModule.h"
#include "platform/Authorization.h"

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

class HelperToolProtocol;

/// Slows the processor down by keeping it from turbo; lets it go again when the mode ends and
/// whenever the machine goes to sleep. There are three ways, all of which need the helper:
///
/// - Where the system has no switch of its own (before version 13), an extension, CPUTune, is kept
///   loaded, and a run-time configuration file tells it what is wanted: the one character "0" for
///   no turbo, "1" for turbo.
/// - With such a switch, on an Intel processor, another extension, DisableTurboBoost, keeps the
///   turbo off as long as it is loaded.
/// - With such a switch, on any other processor, the system's own low power mode is switched.
///
/// Replies of the helper are only logged. Main thread only.
class TurboModule : public QuorvaneModule {
    Q_OBJECT

  public:
    /// Brings an older loaded CPUTune up to date, or, from version 13, switches the turbo on: a run
    /// that was killed may have left it off.
    void init() override;

    [[nodiscard]] QString label() const override;
    [[nodiscard]] QString imageName() const override;
    bool activate() override;
    bool deactivate() override;

    /// Has the module hear when the machine sleeps and wakes up.
    void fileNotifications();

    /// Turbo on, whether or not the module runs: how the machine wakes up is not known.
    void receiveSleepNote();

    /// Turbo off again, if the module runs.
    void receiveWakeNote();

    [[nodiscard]] static bool isIntelProcessor();

    /// Full paths of the bundle's extensions, or nothing when it has none.
    [[nodiscard]] static std::optional<QString> kextPath();
    [[nodiscard]] static std::optional<QString> kextPathVentura();

    /// The version of the bundle's CPUTune, or nothing.
    [[nodiscard]] static std::optional<QString> kextVersion();

    /// The version of the loaded CPUTune, or nothing when none is loaded. Runs the tool that lists
    /// extensions, and blocks as long as that takes; so do the next two.
    [[nodiscard]] std::optional<QString> runningKextVersion();
    [[nodiscard]] bool kextRunning();

    /// Whether the bundle's CPUTune is newer than the loaded one. Numbers in versions count as
    /// numbers: 1.10 is newer than 1.9.
    [[nodiscard]] bool kextNeedsUpdate();

    /// Loads CPUTune, or replaces the loaded one by a newer one.
    void loadKext();
    void unloadKext();

    /// Always true.
    bool disableTurboBoost();
    bool enableTurboBoost();

    [[nodiscard]] bool isVentura() const { return isVentura_; }

  private:
    using Path = std::optional<QString>;

    static void executeInHelper(const std::function<void(HelperToolProtocol& proxy)>& block);
    static void load(HelperToolProtocol& proxy, const Path& path);
    static void unload(HelperToolProtocol& proxy, const Path& path);

    std::unique_ptr<AuthorizationRef> authorizationRef_; ///< kept for its users' sake; never set
    bool isVentura_ = false;                             ///< the system has a switch of its own
};

} // namespace quorvane
