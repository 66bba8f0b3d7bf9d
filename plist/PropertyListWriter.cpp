#include "plist/PropertyListWriter.h"

#include "plist/PropertyList.h"
#include "plist/PropertyListScalars.h"
#include "plist/XmlText.h"

#include <QStringList>

#include <algorithm>

namespace quorvane {

std::optional<QByteArray> PropertyListWriter::write(const QVariant& root) {
    xml_.writeStartDocument();
    newLine(0);
    xml_.writeDTD(QStringLiteral("<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                 "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">"));
    newLine(0);
    xml_.writeStartElement(QStringLiteral("plist"));
    xml_.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    newLine(0);
    if (!value(root, 0)) {
        return std::nullopt;
    }
    newLine(0);
    xml_.writeEndElement();
    newLine(0);
    return xml_.hasError() ? std::nullopt : std::optional(bytes_);
}

bool PropertyListWriter::value(const QVariant& value, int depth) {
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return dict(value.toMap(), depth);
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return array(value.toList(), depth);
    case QMetaType::QString:
        return text(QStringLiteral("string"), value.toString());
    case QMetaType::QByteArray:
        data(value.toByteArray(), depth);
        return true;
    case QMetaType::QDateTime: {
        const auto date = dateToText(value.toDateTime());
        return date && text(QStringLiteral("date"), *date);
    }
    case QMetaType::Bool:
        xml_.writeEmptyElement(value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
        return true;
    case QMetaType::Float:
    case QMetaType::Double:
        return text(QStringLiteral("real"), realToText(value.toDouble()));
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return text(QStringLiteral("integer"), QString::number(value.toLongLong()));
    case QMetaType::UChar:
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return text(QStringLiteral("integer"), QString::number(value.toULongLong()));
    default:
        return false;
    }
}

bool PropertyListWriter::dict(const QVariantMap& map, int depth) {
    if (depth >= maximumPropertyListDepth) {
        return false;
    }
    if (map.isEmpty()) {
        xml_.writeEmptyElement(QStringLiteral("dict"));
        return true;
    }
    xml_.writeStartElement(QStringLiteral("dict"));
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        newLine(depth + 1);
        if (!text(QStringLiteral("key"), entry.key())) {
            return false;
        }
        newLine(depth + 1);
        if (!value(entry.value(), depth + 1)) {
            return false;
        }
    }
    newLine(depth);
    xml_.writeEndElement();
    return true;
}

bool PropertyListWriter::array(const QVariantList& list, int depth) {
    if (depth >= maximumPropertyListDepth) {
        return false;
    }
    if (list.isEmpty()) {
        xml_.writeEmptyElement(QStringLiteral("array"));
        return true;
    }
    xml_.writeStartElement(QStringLiteral("array"));
    for (const QVariant& item : list) {
        newLine(depth + 1);
        if (!value(item, depth + 1)) {
            return false;
        }
    }
    newLine(depth);
    xml_.writeEndElement();
    return true;
}

bool PropertyListWriter::text(const QString& element, const QString& text) {
    if (indexOfForbiddenXmlCharacter(text) >= 0) {
        return false;
    }
    xml_.writeStartElement(element);
    // A carriage return that is not escaped is read back as a line feed.
    const QStringList parts = text.split(u'\r');
    xml_.writeCharacters(parts.first());
    for (qsizetype i = 1; i < parts.size(); ++i) {
        xml_.writeEntityReference(QStringLiteral("#13"));
        xml_.writeCharacters(parts[i]);
    }
    xml_.writeEndElement();
    return true;
}

void PropertyListWriter::data(const QByteArray& data, int depth) {
    const QString base64 = QString::fromLatin1(data.toBase64());
    // As other tools do: up to column 76 where a tab counts as eight, but no shorter than 16.
    const qsizetype lineLength = std::max(16, 76 - 8 * depth);
    xml_.writeStartElement(QStringLiteral("data"));
    for (qsizetype i = 0; i < base64.size(); i += lineLength) {
        newLine(depth);
        xml_.writeCharacters(base64.mid(i, lineLength));
    }
    newLine(depth);
    xml_.writeEndElement();
}

void PropertyListWriter::newLine(int depth) {
    xml_.writeCharacters(u'\n' + QString(depth, u'\t'));
}

} // namespace quorvane
