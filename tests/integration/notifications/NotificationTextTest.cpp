#include "platform/linux/notifications/NotificationText.h"

#include <gtest/gtest.h>

namespace quorvane::test {

namespace {

constexpr qsizetype plenty = 1000;

QString manyLines(const QString& text) {
    return notificationText(text, plenty, Lines::Many);
}

QString oneLine(const QString& text) {
    return notificationText(text, plenty, Lines::One);
}

} // namespace

TEST(NotificationTextTest, OrdinaryText_StaysAsItIs) {
    const QString text = QString::fromUtf8("Weniger als 70 % übrig – ⚡🔋 \u200Fעברית");
    EXPECT_EQ(manyLines(text), text);
    EXPECT_EQ(oneLine(text), text);
    EXPECT_EQ(oneLine(QString()), QString());
}

TEST(NotificationTextTest, LineBreaks_StayOrBecomeSpaces) {
    const QString text = QString::fromUtf8("a\nb\r\nc\rd\u2028e\u2029f");
    EXPECT_EQ(manyLines(text), QLatin1String("a\nb\nc\nd\ne\nf"));
    EXPECT_EQ(oneLine(text), QLatin1String("a b c d e f"));
}

TEST(NotificationTextTest, ControlCharacters_AreLeftOut) {
    const QString text = QLatin1String("a") + QChar(0) + QChar(7) + QChar(0x1B) + QChar(0x7F) +
                         QChar(0x85) + QLatin1String("\tb");
    EXPECT_EQ(oneLine(text), QLatin1String("a b"));
}

TEST(NotificationTextTest, UnpairedSurrogates_AreReplaced) {
    EXPECT_EQ(oneLine(QString(QChar(0xD83D)) + QLatin1Char('a') + QChar(0xDD0B)),
              QString::fromUtf8("\uFFFDa\uFFFD"));
    EXPECT_EQ(oneLine(QString(QChar(0xDD0B)) + QChar(0xD83D)), QString::fromUtf8("\uFFFD\uFFFD"));
}

TEST(NotificationTextTest, Noncharacters_AreReplaced) {
    EXPECT_EQ(oneLine(QString(QChar(0xFFFE)) + QChar(0xFFFF) + QChar(0xFDD0)),
              QString::fromUtf8("\uFFFD\uFFFD\uFFFD"));
}

TEST(NotificationTextTest, LongText_IsCutWithAnEllipsis) {
    EXPECT_EQ(notificationText(QStringLiteral("abcd"), 4, Lines::One), QLatin1String("abcd"));
    EXPECT_EQ(notificationText(QStringLiteral("abcde"), 4, Lines::One), QString::fromUtf8("abc…"));
}

TEST(NotificationTextTest, LongText_IsNotCutWithinACharacter) {
    EXPECT_EQ(notificationText(QString::fromUtf8("🔋🔋🔋🔋"), 3, Lines::One), QString::fromUtf8("🔋🔋…"));
}

} // namespace quorvane::test
