#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <optional>

/// XML property lists, the format of bundles' Info.plist and of the battery log. Any thread.
///
/// dict is a QVariantMap, array a QVariantList, string a QString, integer a qlonglong (above its
/// range a qulonglong), real a double, date a QDateTime in UTC with whole seconds, data a
/// QByteArray, true and false a bool.
namespace quorvane {

/// How deep dictionaries and arrays may be nested, read or written. Far beyond what a program
/// writes, and far from the end of a thread's stack.
constexpr int maximumPropertyListDepth = 512;

/// The value, or why there is none: "line 3, column 7: ..." where it lies at one place.
struct PropertyListResult {
    std::optional<QVariant> value;
    QString error;
};

/// Reads with or without a DOCTYPE (which is never fetched) and with or without the <plist> element
/// around the value. Of a key that comes twice the last value counts. Anything that is no part of
/// a property list is refused, not skipped, so that a list that is read, changed and written back
/// keeps every other value of the user's.
[[nodiscard]] PropertyListResult readPropertyList(const QByteArray& xml);

/// UTF-8 and laid out as other tools do it. Any integer type is written as an integer, float and
/// double as a real, a QStringList as an array; dates are written in UTC, without the fraction of
/// the second. Nothing when a value has no form in a property list: another type, a character that
/// XML forbids, a date that is invalid or outside the years 1 to 9999, or too deep a nesting.
[[nodiscard]] std::optional<QByteArray> writePropertyList(const QVariant& root);

} // namespace quorvane
