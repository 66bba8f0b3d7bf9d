#include "plist/XmlText.h"

#include <QStringDecoder>
#include <QXmlStreamReader>

#include <algorithm>

namespace quorvane {

namespace {

/// Long enough for any DOCTYPE and any tag of a file that a program or a person wrote.
constexpr qsizetype maximumTagLength = 1024;

/// An XML declaration is the first thing in a file, and short.
constexpr qsizetype declarationLength = 256;

struct Problem {
    qsizetype offset;
    QString message;
};

XmlTextResult refuse(const QString& error) {
    return {std::nullopt, error};
}

XmlTextResult refuse(QStringView text, const Problem& problem) {
    const QStringView before = text.first(problem.offset);
    const qsizetype line = before.count(u'\n') + 1;
    const qsizetype column = problem.offset - before.lastIndexOf(u'\n');
    return refuse(xmlErrorAt(line, column, problem.message));
}

/// What the XML declaration says, in capitals; empty when it says nothing.
QString declaredEncoding(const QByteArray& bytes, QStringConverter::Encoding detected) {
    // UTF-8 files may declare another 8-bit encoding, but up to that place they are ASCII.
    const bool isWide = detected != QStringConverter::Utf8;
    QStringDecoder decoder(isWide ? detected : QStringConverter::Latin1);
    QByteArrayView start = QByteArrayView(bytes).first(qMin(bytes.size(), declarationLength));
    if (const QByteArrayView mark("\xEF\xBB\xBF"); start.startsWith(mark)) {
        start = start.sliced(mark.size());
    }
    // Not a regular expression: this runs at every start, and their library is large.
    QXmlStreamReader reader(QString(decoder(start)));
    reader.readNext();
    return reader.documentEncoding().toString().toUpper();
}

/// The encoding to decode with; nothing when the declaration contradicts the bytes, or names an
/// encoding that not every reader of XML knows.
std::optional<QStringConverter::Encoding> encodingFor(QStringConverter::Encoding detected,
                                                      const QString& declared) {
    if (detected == QStringConverter::Utf16LE || detected == QStringConverter::Utf16BE) {
        const bool isUtf16 = declared.isEmpty() || declared.startsWith(QLatin1String("UTF-16"));
        return isUtf16 ? std::optional(detected) : std::nullopt;
    }
    if (detected != QStringConverter::Utf8) {
        return std::nullopt;
    }
    if (declared == QLatin1String("ISO-8859-1")) {
        return QStringConverter::Latin1;
    }
    const bool isUtf8 = declared.isEmpty() || declared == QLatin1String("UTF-8") ||
                        declared == QLatin1String("US-ASCII");
    return isUtf8 ? std::optional(detected) : std::nullopt;
}

bool isAscii(const QByteArray& bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// What ends the comment, CDATA section or processing instruction that begins here; empty when a
/// tag or a DOCTYPE begins here.
QLatin1String closingMark(QStringView markup) {
    if (markup.startsWith(QLatin1String("<!--"))) {
        return QLatin1String("-->");
    }
    if (markup.startsWith(QLatin1String("<![CDATA["))) {
        return QLatin1String("]]>");
    }
    return QLatin1String(markup.startsWith(QLatin1String("<?")) ? "?>" : "");
}

/// Looks over the tag or DOCTYPE at `start`, and sets `end` behind it.
std::optional<Problem> findCostlyTag(QStringView text, qsizetype start, qsizetype& end) {
    const bool isDocType = text.sliced(start).startsWith(QLatin1String("<!"));
    QChar quote;
    for (end = start + 1; end < text.size(); ++end) {
        const QChar c = text[end];
        if (end - start >= maximumTagLength) {
            return Problem{start, QStringLiteral("this tag is too long")};
        }
        if (!quote.isNull()) {
            quote = c == quote ? QChar() : quote;
        } else if (c == u'"' || c == u'\'') {
            quote = c;
        } else if (c == u'[' && isDocType) {
            return Problem{end, QStringLiteral("declarations inside the DOCTYPE (such as "
                                               "entities) are not supported")};
        } else if (c == u'>' || c == u'<') {
            break;
        }
    }
    return std::nullopt;
}

std::optional<Problem> findCostlyMarkup(QStringView text) {
    qsizetype end = 0;
    for (qsizetype start = text.indexOf(u'<'); start >= 0; start = text.indexOf(u'<', end)) {
        const QLatin1String closing = closingMark(text.sliced(start));
        if (closing.isEmpty()) {
            if (auto problem = findCostlyTag(text, start, end)) {
                return problem;
            }
            continue;
        }
        // "<!-->" is only the beginning of a comment.
        const qsizetype inside = start + (closing == QLatin1String("-->") ? 4 : 2);
        end = text.indexOf(closing, qMin(inside, text.size()));
        if (end < 0) {
            break;
        }
    }
    return std::nullopt;
}

std::optional<Problem> findProblem(QStringView text) {
    if (const qsizetype at = indexOfForbiddenXmlCharacter(text); at >= 0) {
        const QString code = QString::number(text[at].unicode(), 16).toUpper();
        return Problem{at, QStringLiteral("the character U+%1 is not allowed in XML")
                               .arg(code, 4, QLatin1Char('0'))};
    }
    return findCostlyMarkup(text);
}

} // namespace

XmlTextResult decodeXml(const QByteArray& bytes) {
    if (bytes.isEmpty()) {
        return refuse(QStringLiteral("the file is empty"));
    }
    const auto detected =
        QStringConverter::encodingForData(bytes, u'<').value_or(QStringConverter::Utf8);
    const QString declared = declaredEncoding(bytes, detected);
    const auto encoding = encodingFor(detected, declared);
    const QLatin1String detectedName(QStringConverter::nameForEncoding(detected));
    if (!encoding && declared.isEmpty()) {
        return refuse(QStringLiteral("the encoding %1 is not supported").arg(detectedName));
    }
    if (!encoding) {
        return refuse(QStringLiteral("the declared encoding \"%1\" is not supported, or is not "
                                     "the one that the file is in")
                          .arg(declared.left(40)));
    }
    QStringDecoder decoder(*encoding, QStringConverter::Flag::Stateless);
    QString text = decoder(bytes);
    if (decoder.hasError() || (declared == QLatin1String("US-ASCII") && !isAscii(bytes))) {
        return refuse(QStringLiteral("the file is not text in the encoding %1")
                          .arg(declared.isEmpty() ? detectedName : declared));
    }
    if (const auto problem = findProblem(text)) {
        return refuse(text, *problem);
    }
    return {std::move(text), {}};
}

qsizetype indexOfForbiddenXmlCharacter(QStringView text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
        } else if ((c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || QChar::isSurrogate(c) ||
                   c >= 0xFFFE) {
            return i;
        }
    }
    return -1;
}

QString xmlErrorAt(qint64 line, qint64 column, const QString& message) {
    return QStringLiteral("line %1, column %2: %3").arg(line).arg(column).arg(message);
}

} // namespace quorvane
