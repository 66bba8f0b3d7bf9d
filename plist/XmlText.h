#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// The characters of an XML file, or why they cannot be given to a parser.
struct XmlTextResult {
    std::optional<QString> text;
    QString error;
};

/// Decodes the bytes of an XML file and looks over its markup before a parser does. Any thread.
///
/// Read: UTF-8 and UTF-16 (with or without byte-order mark), and ISO-8859-1 and US-ASCII where the
/// file declares them. Refused: bytes that are not text in that encoding, characters that XML
/// forbids, and the two constructs that make a small file costly to parse: declarations inside the
/// DOCTYPE (entities that multiply or name other files, default attributes) and tags of more than
/// a thousand characters (a parser compares every attribute with every other). All else that may
/// be wrong with the markup is the parser's to find.
[[nodiscard]] XmlTextResult decodeXml(const QByteArray& bytes);

/// The index of the first character (or half of a pair without the other half) that XML 1.0 cannot
/// hold, not even as a character reference; -1 when there is none.
[[nodiscard]] qsizetype indexOfForbiddenXmlCharacter(QStringView text);

/// "line 3, column 7: message"; both count from 1.
[[nodiscard]] QString xmlErrorAt(qint64 line, qint64 column, const QString& message);

} // namespace quorvane
