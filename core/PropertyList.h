#pragma once
#include <QByteArray>
#include <QVariant>

#include <optional>

namespace quorvane {
struct PropertyListResult {
    std::optional<QVariant> value;
    QString error;
};

[[nodiscard]] PropertyListResult readPropertyList(const QByteArray& xml);
[[nodiscard]] std::optional<QByteArray> writePropertyList(const QVariant& root);
} // namespace quorvane
