#include "apps/demo/Charset.h"

#include <array>
#include <utility>

namespace quorvane {

namespace {

constexpr std::array relatives{
    std::pair{u'\u2014', "-"},  // em dash
    std::pair{u'\u2013', "-"},  // en dash
    std::pair{u'\u2192', "->"}, // arrow
    std::pair{u'\u2019', "'"},  std::pair{u'\u201c', "\""},
    std::pair{u'\u201d', "\""}, std::pair{u'\u2026', "..."}, // ellipsis
    std::pair{u'\u00a0', " "},                               // no-break space
};

QString relative(QChar character) {
    for (const auto& [original, replacement] : relatives) {
        if (character == original) {
            return QString::fromLatin1(replacement);
        }
    }
    return QStringLiteral("?");
}

} // namespace

QString asciiOnly(const QString& text) {
    constexpr char16_t lastAscii = 0x7e;
    QString result;
    for (const QChar character : text) {
        result += character.unicode() <= lastAscii ? QString(character) : relative(character);
    }
    return result;
}

QByteArray encoded(const QString& text, Charset charset) {
    return charset == Charset::Utf8 ? text.toUtf8() : asciiOnly(text).toLatin1();
}

} // namespace quorvane
