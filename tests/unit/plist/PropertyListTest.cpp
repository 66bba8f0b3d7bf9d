#include "plist/PropertyList.h"

#include "tests/support/PropertyListChecks.h"
#include "tests/support/Utc.h"

#include <QStringEncoder>

#include <limits>
#include <random>
#include <string>

namespace quorvane::test {

class PropertyListTest : public testing::Test {
  protected:
    static QVariantMap everyType() {
        return {
            {QStringLiteral("array"), QVariantList{qlonglong(1), QVariantList{}, QVariantMap{}}},
            {QStringLiteral("data"), QByteArray("\0\x01\xFF binary", 10)},
            {QStringLiteral("date"), utc(QDate(2024, 2, 29), QTime(12, 34, 56))},
            {QStringLiteral("dict"), QVariantMap{{QString(), false}, {QStringLiteral("k"), true}}},
            {QStringLiteral("large"), std::numeric_limits<qulonglong>::max()},
            {QStringLiteral("real"), -72.125},
            {QStringLiteral("small"), std::numeric_limits<qlonglong>::min()},
            {QStringLiteral("<\"Grüße\" & '電池' 🔋>"), QStringLiteral(" a\r\nb\tc]]>\r ")},
        };
    }

    /// An array in an array in an array ..., `depth` in all.
    static QVariant nestedArrays(int depth) {
        QVariant value = QVariantList{};
        for (int i = 1; i < depth; ++i) {
            value = QVariantList{value};
        }
        return value;
    }

    static QByteArray nestedArraysXml(int depth) {
        return inPlist(QByteArray("<array>").repeated(depth) +
                       QByteArray("</array>").repeated(depth));
    }
};

TEST_F(PropertyListTest, OtherEncodings_AreRead) {
    const QString text = QStringLiteral("<?xml version='1.0' encoding='%1'?>"
                                        "<plist><string>Grüße</string></plist>");
    const QVariant value = QStringLiteral("Grüße");
    expectRead(text.arg(QLatin1String("ISO-8859-1")).toLatin1(), value);
    expectRead("\xEF\xBB\xBF" + text.arg(QLatin1String("UTF-8")).toUtf8(), value);
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringConverter::Flag::WriteBom);
        expectRead(encoder.encode(text.arg(QLatin1String("UTF-16"))), value);
    }
}

TEST_F(PropertyListTest, EveryTruncation_IsRefused) {
    const auto xml = writePropertyList(everyType());
    ASSERT_TRUE(xml);
    const qsizetype end = xml->lastIndexOf('>');
    for (qsizetype length = 0; length <= end; ++length) {
        const auto result = readPropertyList(xml->first(length));
        EXPECT_FALSE(result.value) << length;
        EXPECT_FALSE(result.error.isEmpty()) << length;
    }
    expectRead(xml->first(end + 1), everyType());
}

TEST_F(PropertyListTest, HugeNumber_IsRefusedWithAShortMessage) {
    const QByteArray digits(1'000'000, '9');
    for (const QByteArray element : {"integer", "real"}) {
        const auto result =
            readPropertyList(inPlist("<" + element + ">" + digits + "</" + element + ">"));
        EXPECT_FALSE(result.value);
        EXPECT_LT(result.error.size(), 200);
    }
}

TEST_F(PropertyListTest, MultiplyingEntities_AreRefused) {
    QByteArray bomb = "<!DOCTYPE plist [<!ENTITY e0 'ha'>";
    for (int i = 1; i < 40; ++i) {
        const QByteArray before = "&e" + QByteArray::number(i - 1) + ";";
        bomb += "<!ENTITY e" + QByteArray::number(i) + " '" + before + before + "'>";
    }
    expectRefused(bomb + "]>" + inPlist("<string>&e39;</string>"), "entities");
}

TEST_F(PropertyListTest, LongEntityUsedOften_IsRefused) {
    expectRefused("<!DOCTYPE plist [<!ENTITY e '" + QByteArray(50'000, 'x') + "'>]>" +
                      inPlist("<string>" + QByteArray("&e;").repeated(20'000) + "</string>"),
                  "entities");
}

TEST_F(PropertyListTest, ParameterEntitiesAndDefaultAttributes_AreRefused) {
    expectRefused("<!DOCTYPE plist [<!ENTITY % a '<!ENTITY b \"c\">'>%a;]>" +
                      inPlist("<string>&b;</string>"),
                  "entities");
    expectRefused("<!DOCTYPE plist [<!ATTLIST plist a CDATA 'b'>]>" + inPlist("<true/>"),
                  "DOCTYPE");
}

TEST_F(PropertyListTest, EntityThatNamesAFile_IsRefused) {
    expectRefused("<!DOCTYPE plist [<!ENTITY e SYSTEM 'file:///etc/hostname'>]>" +
                      inPlist("<string>&e;</string>"),
                  "entities");
}

TEST_F(PropertyListTest, Depth_UpToTheLimitIsReadAndWritten) {
    expectRead(nestedArraysXml(maximumPropertyListDepth), nestedArrays(maximumPropertyListDepth));
    expectSurvives(nestedArrays(maximumPropertyListDepth));
}

TEST_F(PropertyListTest, Depth_BeyondTheLimitIsRefused) {
    expectRefused(nestedArraysXml(maximumPropertyListDepth + 1), "nested deeper than 512 levels");
    EXPECT_FALSE(writePropertyList(nestedArrays(maximumPropertyListDepth + 1)));
    EXPECT_FALSE(writePropertyList(
        QVariantMap{{QStringLiteral("a"), nestedArrays(maximumPropertyListDepth)}}));
}

TEST_F(PropertyListTest, Depth_OfAMegabyteIsRefused) {
    expectRefused(QByteArray("<array>").repeated(150'000), "nested deeper");
    expectRefused(QByteArray("<dict><key>a</key>").repeated(60'000), "nested deeper");
    expectRefused(QByteArray("<plist>").repeated(150'000), "\"plist\"");
    expectRefused(inPlist(QByteArray("<string>").repeated(150'000)), "only text");
}

TEST_F(PropertyListTest, WhatIsNoXml_IsRefused) {
    expectRefused("", "empty");
    expectRefused(" \n", "line 2");
    expectRefused(QByteArray("bplist00\xD0\x08\0\0", 12), "binary property list");
    expectRefused(QByteArray(4096, '\0'), "not ");
    expectRefused(inPlist(QByteArray("<string>a\0b</string>", 20)), "U+0000");
    expectRefused(inPlist("<true/>") + '\0', "U+0000");
    expectRefused("\x89PNG\r\n\x1A\n", "UTF-8");
    expectRefused("{\"json\": true}", "line 1");
}

TEST_F(PropertyListTest, RandomBytes_AreRefused) {
    std::mt19937 random(2); // the same bytes in every run
    for (int i = 0; i < 1000; ++i) {
        QByteArray bytes(qsizetype(random() % 200), Qt::Uninitialized);
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        expectRefused(bytes, "");
    }
}

TEST_F(PropertyListTest, EveryTypeSurvives) {
    expectSurvives(everyType());
    expectSurvives(QVariantList{everyType(), everyType()});
    expectSurvives(QString());
}

TEST_F(PropertyListTest, RealsSurvive) {
    using Limits = std::numeric_limits<double>;
    expectSurvives(QVariantList{0.0, -0.0, 0.1, 1e22, Limits::max(), Limits::min(),
                                Limits::denorm_min(), Limits::infinity(), -Limits::infinity(),
                                Limits::quiet_NaN()});
}

TEST_F(PropertyListTest, RandomMutations_AreRefusedOrSurvive) {
    const auto valid = writePropertyList(everyType());
    ASSERT_TRUE(valid);
    const std::string alphabet = "<>/&;!-[]?\"'=#x \n\r\t0919aeZ.+\x80\xC3";
    std::mt19937 random(3); // the same mutations in every run
    const auto below = [&](qsizetype limit) { return qsizetype(random()) % limit; };
    int accepted = 0;
    for (int i = 0; i < 20'000; ++i) {
        QByteArray xml = *valid;
        for (auto count = 1 + below(3); count > 0; --count) {
            const auto at = below(xml.size());
            switch (below(4)) {
            case 0:
                xml[at] = static_cast<char>(random());
                break;
            case 1:
                xml[at] = alphabet[std::size_t(below(qsizetype(alphabet.size())))];
                break;
            case 2:
                xml.remove(at, 1 + below(20));
                break;
            default:
                xml.insert(at, xml.mid(below(xml.size()), 1 + below(60)));
            }
        }
        const auto result = readPropertyList(xml);
        ASSERT_NE(result.value.has_value(), !result.error.isEmpty()) << xml.constData();
        if (result.value) {
            ++accepted;
            expectSurvives(*result.value);
        }
    }
    EXPECT_GT(accepted, 500);
    EXPECT_LT(accepted, 15'000);
}

} // namespace quorvane::test
