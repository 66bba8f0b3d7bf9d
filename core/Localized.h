#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// The user's language's text for an English text, which is the key; the key itself where there is
/// no translation.
[[nodiscard]] QString localized(const char* key);

/// The same for a text about `number` things, in the form that the language has for so many.
[[nodiscard]] QString localized(const char* key, int number);

/// Fills each "%@" of a localized text in, in order. Texts too many are left out, and a "%@" too
/// many stays.
[[nodiscard]] QString filledIn(const QString& text, const QStringList& texts);

/// Fills a localized text in: "%d" becomes the number (the first one only), "%%" a percent sign.
/// Anything else that looks like a directive stays as it is, so that a faulty translation shows as
/// a faulty text and not as a crash.
[[nodiscard]] QString filledIn(const QString& text, int number);

} // namespace quorvane
