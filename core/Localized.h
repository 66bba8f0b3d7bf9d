#pragma once

#include <QString>

namespace quorvane {

/// The user's language's text for an English text, which is the key; the key itself where there is
/// no translation.
[[nodiscard]] QString localized(const char* key);

/// Fills a localized text in: "%d" becomes the number (the first one only), "%%" a percent sign.
/// Anything else that looks like a directive stays as it is, so that a faulty translation shows as
/// a faulty text and not as a crash.
[[nodiscard]] QString filledIn(const QString& text, int number);

} // namespace quorvane
