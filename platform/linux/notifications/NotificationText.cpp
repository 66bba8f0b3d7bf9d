#include "platform/linux/notifications/NotificationText.h"

#include <QChar>
#include <QList>
#include <QStringView>

namespace quorvane {

namespace {

constexpr char32_t ellipsis = U'\u2026';

bool breaksLine(char32_t character) {
    const QChar::Category category = QChar::category(character);
    return character == U'\n' || character == U'\r' || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

/// What stands for one character of the original, or 0 for nothing.
char32_t replacement(char32_t character, Lines lines) {
    if (breaksLine(character)) {
        return lines == Lines::Many ? U'\n' : U' ';
    }
    if (character == U'\t') {
        return U' ';
    }
    // Servers parse the text as XML, which has no place for either.
    if (QChar::isNonCharacter(character)) {
        return QChar::ReplacementCharacter;
    }
    return QChar::category(character) == QChar::Other_Control ? U'\0' : character;
}

} // namespace

QString notificationText(const QString& text, qsizetype limit, Lines lines) {
    const QList<uint> characters = text.toUcs4(); // unpaired surrogates come out replaced
    QList<char32_t> result;
    for (qsizetype i = 0; i < characters.size() && result.size() <= limit; ++i) {
        if (characters[i] == U'\r' && i + 1 < characters.size() && characters[i + 1] == U'\n') {
            continue;
        }
        if (const char32_t kept = replacement(characters[i], lines); kept != U'\0') {
            result.append(kept);
        }
    }
    if (result.size() > limit) {
        result.resize(limit);
        result.last() = ellipsis;
    }
    return QString::fromUcs4(result.constData(), result.size());
}

} // namespace quorvane
