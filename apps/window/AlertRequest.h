#pragma once

#include "platform/Windows.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// An alert as another program asks for it.
struct AlertRequest {
    std::optional<Alert> alert;
    QString error; ///< without an alert: what is wrong with the text, for a log

    /// Reads one JSON object: "messageText" and "informativeText" (texts; the second may be
    /// missing), "buttons" (at least one text) and "safeButton" (the index of one of them; 0 when
    /// it is missing). Names that are not known are passed over.
    [[nodiscard]] static AlertRequest parse(const QByteArray& json);
};

} // namespace quorvane
