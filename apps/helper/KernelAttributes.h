#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// Attributes of the kernel's devices by their paths beneath one folder, such as
/// "devices/system/cpu/cpufreq/boost". Nothing is followed out of there by a link in the last
/// place. Main thread only.
class KernelAttributes {
  public:
    /// `root` is "/sys", without a slash at its end.
    explicit KernelAttributes(QString root);

    /// One line without surrounding white space, at most 256 bytes; nothing when there is no such
    /// attribute or it cannot be read.
    [[nodiscard]] std::optional<QString> read(const QString& attribute) const;

    /// Returns the error, or nothing. Succeeding means that the kernel has taken the value.
    [[nodiscard]] std::optional<QString> write(const QString& attribute,
                                               const QString& value) const;

    /// The names in a folder that begin with `prefix`, in their order.
    [[nodiscard]] QStringList names(const QString& folder, const QString& prefix) const;

  private:
    [[nodiscard]] int open(const QString& attribute, int flags) const;

    QString root_;
};

} // namespace quorvane
