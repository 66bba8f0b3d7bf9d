#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// The kernel's backlight devices. Brightnesses are raw values, 0 to the device's maximum. Any
/// thread.
class Backlights {
  public:
    /// `sysfsRoot` is where sysfs is mounted.
    explicit Backlights(const QString& sysfsRoot);

    /// Names of the devices whose brightness can be told, in the order in which desktops prefer
    /// them: those of the firmware, of the platform, then those that drive the panel directly.
    [[nodiscard]] QStringList names() const;

    /// Above 0; nothing when there is no such device.
    [[nodiscard]] std::optional<int> maximum(const QString& name) const;

    /// Nothing when the device is gone or cannot tell.
    [[nodiscard]] std::optional<int> raw(const QString& name) const;

    /// Writes the brightness into the device's file, which few users may do. Returns 0 or the
    /// errno.
    int setRaw(const QString& name, int raw) const;

    [[nodiscard]] QString brightnessFile(const QString& name) const;

  private:
    [[nodiscard]] QString folder(const QString& name) const;

    QString class_;
};

} // namespace quorvane
