#include "plist/XmlText.h"

#include <QStringEncoder>
#include <gtest/gtest.h>

#include <string>

namespace quorvane::test {

class XmlTextTest : public testing::Test {
  protected:
    static void expectText(const QByteArray& bytes, const QString& text) {
        const auto result = decodeXml(bytes);
        EXPECT_EQ(result.error.toStdString(), "");
        ASSERT_TRUE(result.text);
        EXPECT_EQ(result.text->toStdString(), text.toStdString());
    }

    /// Also that the reason contains `reason`.
    static void expectRefused(const QByteArray& bytes, const char* reason) {
        const auto result = decodeXml(bytes);
        EXPECT_FALSE(result.text);
        EXPECT_TRUE(result.error.contains(QLatin1String(reason))) << qPrintable(result.error);
    }

    static QByteArray encoded(QStringConverter::Encoding encoding, const QString& text,
                              bool withMark = true) {
        QStringEncoder encoder(encoding, withMark ? QStringConverter::Flag::WriteBom
                                                  : QStringConverter::Flag::Default);
        return encoder.encode(text);
    }

    const QString plain_ = QStringLiteral("<a>Grüße, 電池 🔋</a>");
};

TEST_F(XmlTextTest, Utf8_WithAndWithoutMarkAndDeclaration) {
    const QString declared = QStringLiteral("<?xml version='1.0' encoding='utf-8'?>") + plain_;
    expectText(plain_.toUtf8(), plain_);
    expectText("\xEF\xBB\xBF" + plain_.toUtf8(), plain_);
    expectText(declared.toUtf8(), declared);
    expectText("\xEF\xBB\xBF" + declared.toUtf8(), declared);
}

TEST_F(XmlTextTest, Utf16_InBothByteOrders) {
    const QString declared = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?>") + plain_;
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        for (const QString& text : {plain_, declared}) {
            expectText(encoded(encoding, text), text);
            expectText(encoded(encoding, text, false), text);
        }
    }
}

TEST_F(XmlTextTest, Latin1_WhereDeclared) {
    const QString text = QStringLiteral("<?xml version='1.0' encoding='ISO-8859-1'?><a>Grüße</a>");
    expectText(text.toLatin1(), text);
}

TEST_F(XmlTextTest, Ascii_WhereDeclared) {
    const QString text = QStringLiteral("<?xml version='1.0' encoding='US-ASCII'?><a>x</a>");
    expectText(text.toLatin1(), text);
}

TEST_F(XmlTextTest, BytesThatAreNotInTheEncoding_AreRefused) {
    expectRefused("<a>\xE4</a>", "not text in the encoding UTF-8");
    expectRefused("<a>\xC0\x80</a>", "UTF-8");
    expectRefused("<a>\xED\xA0\x80</a>", "UTF-8");
    expectRefused("<a>\xE2\x82", "UTF-8");
    expectRefused("<?xml version='1.0' encoding='US-ASCII'?><a>\xC3\xA4</a>", "US-ASCII");
}

TEST_F(XmlTextTest, OtherEncodings_AreRefusedByName) {
    expectRefused("<?xml version='1.0' encoding='windows-1252'?><a/>", "WINDOWS-1252");
    expectRefused("<?xml version='1.0' encoding='UTF-7'?><a/>", "UTF-7");
    expectRefused(encoded(QStringConverter::Utf32LE, plain_), "UTF-32");
}

TEST_F(XmlTextTest, DeclarationThatContradictsTheBytes_IsRefused) {
    const QString utf8 = QStringLiteral("<?xml version='1.0' encoding='UTF-8'?><a/>");
    expectRefused(encoded(QStringConverter::Utf16LE, utf8), "declared encoding");
    expectRefused("<?xml version='1.0' encoding='UTF-16'?><a/>", "declared encoding");
}

TEST_F(XmlTextTest, EmptyFile_IsRefused) {
    expectRefused("", "empty");
}

TEST_F(XmlTextTest, ForbiddenCharacter_IsRefusedWithItsPlace) {
    expectRefused(QByteArray("<a>x\0y</a>", 10), "line 1, column 5: the character U+0000");
    expectRefused("<a>\r\n\n  \x0B</a>", "line 3, column 3: the character U+000B");
    expectRefused("<a>\xEF\xBF\xBE</a>", "U+FFFE");
    expectRefused(QByteArray("\xFF\xFE<\0\x00\xD8>\0", 8), "U+D800");
}

TEST_F(XmlTextTest, ForbiddenCharacters) {
    EXPECT_EQ(indexOfForbiddenXmlCharacter(u"\t\n\r \u007F\u0085\uFFFD🔋"), -1);
    EXPECT_EQ(indexOfForbiddenXmlCharacter({}), -1);
    for (const int c : {0x00, 0x01, 0x08, 0x0B, 0x0C, 0x1F, 0xD800, 0xDC00, 0xFFFE, 0xFFFF}) {
        const QString text = u'a' + QString(QChar(c)) + u'b';
        EXPECT_EQ(indexOfForbiddenXmlCharacter(text), 1) << c;
    }
    const char16_t swapped[] = {u'a', 0xDC00, 0xD800};
    EXPECT_EQ(indexOfForbiddenXmlCharacter(QStringView(swapped, 3)), 1);
    const char16_t cut[] = {0xD83D, 0xDD0B, 0xD83D};
    EXPECT_EQ(indexOfForbiddenXmlCharacter(QStringView(cut, 3)), 2);
}

TEST_F(XmlTextTest, DeclarationsInsideTheDocType_AreRefused) {
    expectRefused("<!DOCTYPE a [<!ENTITY x 'y'>]><a/>", "line 1, column 13: declarations");
    expectRefused("<!DOCTYPE a SYSTEM 'b' []><a/>", "declarations");
    expectRefused("<a><!DOCTYPE a [<!ENTITY x 'y'>]></a>", "declarations");
}

TEST_F(XmlTextTest, DeclarationsInsideTheDocType_CannotBeHiddenFromTheCheck) {
    expectRefused("<!DOCTYPE a SYSTEM '<!--' [<!ENTITY x 'y'>]><a/>", "declarations");
    expectRefused("<!DOCTYPE a SYSTEM '>' [<!ENTITY x 'y'>]><a/>", "declarations");
    expectRefused("<!DOCTYPE a PUBLIC \"'\" '\"' [<!ENTITY x 'y'>]><a/>", "declarations");
    expectRefused("<!--<!--><!-- --><!DOCTYPE a [<!ENTITY x 'y'>]><a/>", "declarations");
    expectRefused("<?x <!-- ?><!DOCTYPE a [<!ENTITY x 'y'>]><a/>", "declarations");
    expectRefused("<!----><!DOCTYPE a [<!ENTITY x 'y'>]><a/>", "declarations");
}

TEST_F(XmlTextTest, OrdinaryDocType_IsRead) {
    const QString text = QStringLiteral("<!DOCTYPE a PUBLIC \"-//[x]//\" \"http://[::1]/\"><a/>");
    expectText(text.toUtf8(), text);
}

TEST_F(XmlTextTest, BracketsOutsideADocType_AreText) {
    const QString text = QStringLiteral("<a b='['>[<!-- [ --><![CDATA[[<!DOCTYPE x []>]]]></a>");
    expectText(text.toUtf8(), text);
}

TEST_F(XmlTextTest, TagWithVeryManyAttributes_IsRefused) {
    QByteArray flood = "<a>\n<b";
    for (int i = 0; i < 80'000; ++i) {
        flood += " a" + QByteArray::number(i) + "=''";
    }
    expectRefused(flood + "/></a>", "line 2, column 1: this tag is too long");
    expectRefused("<a b='" + QByteArray(2000, '>') + "'/>", "too long");
    expectRefused("</" + QByteArray(2000, ' '), "too long");
}

TEST_F(XmlTextTest, LongTextCommentAndCData_AreRead) {
    const QString words = QStringLiteral("<b c ").repeated(1000);
    for (const QString& text :
         {QString(QStringLiteral("<a>") + QString(100'000, u'x') + QStringLiteral("</a>")),
          QString(QStringLiteral("<a><!--") + words + QStringLiteral("--></a>")),
          QString(QStringLiteral("<a><![CDATA[") + words + QStringLiteral("]]></a>")),
          QString(QStringLiteral("<a><?pi ") + words + QStringLiteral("?></a>"))}) {
        expectText(text.toUtf8(), text);
    }
}

TEST_F(XmlTextTest, UnfinishedMarkup_IsLeftToTheParser) {
    for (const char* text : {"<", "<!", "<!-", "<!--", "<!-->", "<![CDATA[", "<?", "<?>", "<a b='",
                             "<a <b", "x", "<!DOCTYPE"}) {
        expectText(text, QLatin1String(text));
    }
}

} // namespace quorvane::test
