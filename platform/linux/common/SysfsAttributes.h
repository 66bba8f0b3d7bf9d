#pragma once

#include <QString>

#include <optional>

namespace quorvane {

/// The text of one attribute of a device's folder, without surrounding white space. Nothing when it
/// is missing, cannot be read or is empty: a driver may refuse to read an attribute that it offers.
[[nodiscard]] std::optional<QString> sysfsText(const QString& folder, const char* attribute);

/// The same as a whole number, in the attribute's own unit. Nothing also when it is no number.
[[nodiscard]] std::optional<qlonglong> sysfsNumber(const QString& folder, const char* attribute);

} // namespace quorvane
