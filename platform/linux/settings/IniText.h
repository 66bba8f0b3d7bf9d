#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVariant>

#include <optional>

namespace quorvane {

/// Stored settings by key, as text.
using StoredValues = QMap<QString, QString>;

/// The text of a settings file, in the format of QSettings::IniFormat, which does the parsing and
/// the generating. Main thread only.
///
/// Every value is text. What someone wrote by hand with commas and without quotes, which QSettings
/// takes for a list, is put together again with "," (spaces around the commas are lost); a value
/// that has no text, such as `@Invalid()`, counts as not stored, but stays in the file.
class IniText {
  public:
    enum class Outcome { Parsed, Malformed, Failed };

    struct Parsed {
        Outcome outcome = Outcome::Failed;
        StoredValues values;
        QString error; ///< what kept it from being parsed at all, when that failed
    };

    /// Malformed: QSettings objects to it, or it is not UTF-8 text.
    [[nodiscard]] static Parsed parse(const QByteArray& text);

    /// Stores `value` under `key` in the file, or removes the key when there is no value. Other
    /// keys stay; comments do not. The file must be nobody else's, and its path must not have been
    /// given to this function before: QSettings remembers what it read by path. Returns the error,
    /// or nothing.
    [[nodiscard]] static std::optional<QString> edit(const QString& path, const QString& key,
                                                     const std::optional<QString>& value);

    /// The text that `value` is stored as: `true`/`false`, plain decimal numbers with as many
    /// digits as it takes to read the same number back, addresses fully encoded. Nothing when it
    /// has no text.
    [[nodiscard]] static std::optional<QString> textOf(const QVariant& value);
};

} // namespace quorvane
