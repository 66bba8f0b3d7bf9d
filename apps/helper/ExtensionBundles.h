#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// An extension bundle of the helper's own.
struct Extension {
    QString name;       ///< of its folder, for example "CPUTune.kext"
    QString identifier; ///< for example "com.TarnwickStudios.cputune"
    QString version;
};

/// The two extensions that there are, in a folder of root's. They hold no code: each stands for a
/// driver of the helper's. Any thread.
class ExtensionBundles {
  public:
    static const QString cpuTune;
    static const QString disableTurboBoost;

    /// `folder` without a slash at its end.
    explicit ExtensionBundles(QString folder);

    /// Which of the two somebody means who names a path: only its last component counts, and the
    /// path itself is opened by nobody. Nothing when it is neither.
    [[nodiscard]] static std::optional<QString> meant(const QString& path);

    /// The bundle of this name. Nothing when it is not there, is not its owner's alone (the one
    /// that the helper runs as, which is root), or does not describe itself.
    [[nodiscard]] std::optional<Extension> find(const QString& name) const;

  private:
    QString folder_;
};

} // namespace quorvane
