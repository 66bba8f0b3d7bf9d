#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// The text split at every white space or newline character, without empty pieces.
[[nodiscard]] QStringList words(const QString& text);

} // namespace quorvane
