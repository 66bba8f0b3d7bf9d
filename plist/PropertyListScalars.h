#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <optional>

/// How property lists write numbers, dates and data as text, independent of any locale. Reading
/// allows white space around the text, and nothing else that is not part of the value. Any thread.
namespace quorvane {

/// Decimal, or hexadecimal after "0x", with or without a sign. A qlonglong; a qulonglong only where
/// the value needs one. Nothing when it is no number or does not fit into 64 bits.
[[nodiscard]] std::optional<QVariant> integerFromText(const QString& text);

/// A double: decimal with or without exponent, or "nan", "inf", "infinity" in any case. Nothing
/// when it is no number or beyond the range of a double.
[[nodiscard]] std::optional<QVariant> realFromText(const QString& text);

/// Exactly "YYYY-MM-DDTHH:MM:SSZ": a QDateTime in UTC.
[[nodiscard]] std::optional<QVariant> dateFromText(const QString& text);

/// Base64 with padding, broken into lines anywhere: a QByteArray.
[[nodiscard]] std::optional<QVariant> dataFromText(const QString& text);

/// The shortest text that reads back as the same double.
[[nodiscard]] QString realToText(double value);

/// In UTC, without the fraction of the second. Nothing for an invalid date and for years outside
/// 1 to 9999.
[[nodiscard]] std::optional<QString> dateToText(const QDateTime& value);

} // namespace quorvane
