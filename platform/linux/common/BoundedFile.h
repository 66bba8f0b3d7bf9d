#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// The first `limit` bytes of a regular file that anybody may have put there: never waits for the
/// other end of a pipe, never reads a device, never more than that. Nothing when it is no regular
/// file or cannot be read. Any thread.
[[nodiscard]] std::optional<QByteArray> readBounded(const QString& path, qsizetype limit);

} // namespace quorvane
