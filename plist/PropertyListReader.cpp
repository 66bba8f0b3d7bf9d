#include "plist/PropertyListReader.h"

#include "plist/PropertyListScalars.h"
#include "plist/XmlText.h"

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

using Token = QXmlStreamReader::TokenType;

struct ScalarElement {
    QLatin1String name;
    std::optional<QVariant> (*parse)(const QString&);
};

constexpr std::array scalarElements{
    ScalarElement{QLatin1String("integer"), integerFromText},
    ScalarElement{QLatin1String("real"), realFromText},
    ScalarElement{QLatin1String("date"), dateFromText},
    ScalarElement{QLatin1String("data"), dataFromText},
};

QString quoted(const QString& text) {
    constexpr qsizetype enough = 40;
    return u'"' + (text.size() > enough ? text.left(enough) + u'…' : text) + u'"';
}

} // namespace

PropertyListResult PropertyListReader::read() {
    QVariant root = document();
    if (xml_.hasError()) {
        const qint64 column = std::max<qint64>(xml_.columnNumber(), 1);
        return {std::nullopt, xmlErrorAt(xml_.lineNumber(), column, xml_.errorString())};
    }
    return {std::move(root), {}};
}

QVariant PropertyListReader::document() {
    nextTag();
    const bool isWrapped = xml_.qualifiedName() == QLatin1String("plist");
    if (isWrapped && nextTag() == Token::EndElement) {
        fail(QStringLiteral("the property list holds no value"));
    }
    QVariant root = value(0);
    if (isWrapped && nextTag() == Token::StartElement) {
        fail(QStringLiteral("the property list holds more than one value"));
    }
    nextTag();
    return root;
}

QVariant PropertyListReader::value(int depth) {
    if (xml_.hasError()) {
        return {};
    }
    const QString element = xml_.qualifiedName().toString();
    const bool isDict = element == QLatin1String("dict");
    if (isDict || element == QLatin1String("array")) {
        if (depth >= maximumPropertyListDepth) {
            fail(QStringLiteral("nested deeper than %1 levels").arg(maximumPropertyListDepth));
            return {};
        }
        return isDict ? QVariant(dict(depth + 1)) : QVariant(array(depth + 1));
    }
    return scalar(element);
}

QVariantMap PropertyListReader::dict(int depth) {
    QVariantMap map;
    while (nextTag() == Token::StartElement) {
        if (xml_.qualifiedName() != QLatin1String("key")) {
            fail(QStringLiteral("a value without a key"));
            break;
        }
        const QString key = text();
        if (nextTag() == Token::EndElement || xml_.qualifiedName() == QLatin1String("key")) {
            fail(QStringLiteral("the key %1 has no value").arg(quoted(key)));
        }
        map.insert(key, value(depth));
    }
    return map;
}

QVariantList PropertyListReader::array(int depth) {
    QVariantList list;
    while (nextTag() == Token::StartElement) {
        list.append(value(depth));
    }
    return list;
}

QVariant PropertyListReader::scalar(const QString& element) {
    if (element == QLatin1String("string")) {
        return text();
    }
    const bool isTrue = element == QLatin1String("true");
    if (isTrue || element == QLatin1String("false")) {
        if (nextTag() == Token::StartElement) {
            fail(QStringLiteral("an element inside <%1>").arg(element));
        }
        return isTrue;
    }
    const auto* const kind =
        std::find_if(scalarElements.begin(), scalarElements.end(),
                     [&](const ScalarElement& candidate) { return candidate.name == element; });
    if (kind == scalarElements.end()) {
        fail(QStringLiteral("the element %1 is no value of a property list").arg(quoted(element)));
        return {};
    }
    const QString content = text();
    const auto result = kind->parse(content);
    if (!result) {
        fail(QStringLiteral("%1 is not a valid %2").arg(quoted(content), element));
    }
    return result.value_or(QVariant());
}

QString PropertyListReader::text() {
    QString result;
    for (;;) {
        switch (xml_.readNext()) {
        case Token::Characters:
            result += xml_.text();
            break;
        case Token::Comment:
        case Token::ProcessingInstruction:
            break;
        case Token::EndElement:
            return result;
        case Token::EntityReference:
            fail(QStringLiteral("unknown entity %1").arg(quoted(xml_.name().toString())));
            return {};
        default:
            fail(QStringLiteral("only text may stand here"));
            return {};
        }
    }
}

Token PropertyListReader::nextTag() {
    while (!xml_.hasError()) {
        switch (const Token token = xml_.readNext()) {
        case Token::StartElement:
            mayHaveDocumentType_ = false;
            return token;
        case Token::EndElement:
        case Token::EndDocument:
            return token;
        case Token::DTD:
            checkDocumentType();
            break;
        case Token::Characters:
            if (!xml_.isWhitespace()) {
                fail(QStringLiteral("no text may stand here"));
            }
            break;
        case Token::EntityReference:
            fail(QStringLiteral("unknown entity %1").arg(quoted(xml_.name().toString())));
            break;
        default:
            break;
        }
    }
    return Token::Invalid;
}

void PropertyListReader::checkDocumentType() {
    if (!mayHaveDocumentType_) {
        fail(QStringLiteral("no DOCTYPE may stand here"));
    }
    mayHaveDocumentType_ = false;
}

void PropertyListReader::fail(const QString& message) {
    if (!xml_.hasError()) {
        xml_.raiseError(message);
    }
}

} // namespace quorvane
