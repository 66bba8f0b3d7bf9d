#include "plist/PropertyListWriter.h"

#include "tests/support/PropertyListChecks.h"
#include "tests/support/Utc.h"

#include <QDate>
#include <QUrl>

namespace quorvane::test {

class PropertyListWriterTest : public testing::Test {};

TEST_F(PropertyListWriterTest, LaysOutAsOtherToolsDo) {
    const QVariantMap root{
        {QStringLiteral("a"), QVariantList{1, true, QVariantList{}, QVariantMap{}}},
        {QStringLiteral("b"), QVariantMap{{QStringLiteral("<&>"), QString()}}},
        {QStringLiteral("c"), QVariantList{QByteArray("ABC"), QByteArray()}},
        {QStringLiteral("d"), utc(QDate(2024, 2, 29), QTime(12, 0))},
        {QStringLiteral("e"), 0.5},
    };
    EXPECT_EQ(writePropertyList(root).value_or(QByteArray()).toStdString(),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>a</key>
	<array>
		<integer>1</integer>
		<true/>
		<array/>
		<dict/>
	</array>
	<key>b</key>
	<dict>
		<key>&lt;&amp;&gt;</key>
		<string></string>
	</dict>
	<key>c</key>
	<array>
		<data>
		QUJD
		</data>
		<data>
		</data>
	</array>
	<key>d</key>
	<date>2024-02-29T12:00:00Z</date>
	<key>e</key>
	<real>0.5</real>
</dict>
</plist>
)");
}

TEST_F(PropertyListWriterTest, AnyNumberType) {
    const auto xml = writePropertyList(QVariantList{
        -1, 4'000'000'000U, qlonglong(-1), qulonglong(1), QVariant::fromValue(short(-2)),
        QVariant::fromValue(ushort(2)), QVariant::fromValue(long(-3)),
        QVariant::fromValue(ulong(3)), QVariant::fromValue(static_cast<signed char>(-4)),
        QVariant::fromValue(uchar(4)), 0.5F, 0.1F, true});
    ASSERT_TRUE(xml);
    expectRead(*xml,
               QVariantList{qlonglong(-1), qlonglong(4'000'000'000), qlonglong(-1), qlonglong(1),
                            qlonglong(-2), qlonglong(2), qlonglong(-3), qlonglong(3), qlonglong(-4),
                            qlonglong(4), 0.5, double(0.1F), true});
}

TEST_F(PropertyListWriterTest, StringListBecomesAnArray) {
    const auto xml = writePropertyList(QStringList{QStringLiteral("a"), QStringLiteral("b")});
    ASSERT_TRUE(xml);
    expectRead(*xml, QVariantList{QStringLiteral("a"), QStringLiteral("b")});
}

TEST_F(PropertyListWriterTest, LongDataInLines) {
    const auto xml = writePropertyList(QVariantList{QByteArray(100, 'x')});
    ASSERT_TRUE(xml);
    EXPECT_TRUE(xml->contains("\t<data>\n\t" + QByteArray("eHh4").repeated(17) + "\n\t"));
    for (int depth = 1; depth < 30; ++depth) {
        QVariant nested = QByteArray(1000, 'x');
        for (int i = 0; i < depth; ++i) {
            nested = QVariantList{nested};
        }
        expectSurvives(nested);
    }
}

TEST_F(PropertyListWriterTest, TypeWithoutFormGivesNothing) {
    const QVariantList values{QVariant(),
                              QVariant::fromValue(nullptr),
                              QUrl(QStringLiteral("a:b")),
                              QDate(2024, 1, 1),
                              QChar(u'a'),
                              QDateTime(),
                              QVariantHash{}};
    for (const QVariant& value : values) {
        EXPECT_FALSE(writePropertyList(value)) << describe(value);
        EXPECT_FALSE(writePropertyList(QVariantList{1, value})) << describe(value);
        EXPECT_FALSE(writePropertyList(QVariantMap{{QStringLiteral("a"), value}}));
    }
}

TEST_F(PropertyListWriterTest, ForbiddenCharacterGivesNothing) {
    for (const int c : {0x00, 0x0B, 0x1B, 0xD800, 0xDC00, 0xFFFE, 0xFFFF}) {
        const QString text = u'a' + QString(QChar(c)) + u'b';
        EXPECT_FALSE(writePropertyList(text)) << c;
        EXPECT_FALSE(writePropertyList(QVariantMap{{text, 1}})) << c;
    }
}

} // namespace quorvane::test
