#include "plist/PropertyListScalars.h"

#include "tests/support/DescribeValue.h"
#include "tests/support/Utc.h"

#include <QLocale>
#include <QTimeZone>
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace quorvane::test {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

QDateTime utc(int year, int month, int day, int hour, int minute, int second) {
    return test::utc(QDate(year, month, day), QTime(hour, minute, second));
}

} // namespace

class PropertyListScalarsTest : public testing::Test {
  protected:
    using Parse = std::optional<QVariant> (*)(const QString&);

    static void expectValue(Parse parse, const char* written, const QVariant& value) {
        const auto result = parse(text(written));
        ASSERT_TRUE(result) << written;
        EXPECT_EQ(describe(*result), describe(value)) << written;
    }

    static void expectRefused(Parse parse, std::initializer_list<const char*> texts) {
        for (const char* written : texts) {
            EXPECT_FALSE(parse(text(written))) << '"' << written << '"';
        }
    }
};

TEST_F(PropertyListScalarsTest, Integer_Decimal) {
    expectValue(integerFromText, "0", qlonglong(0));
    expectValue(integerFromText, "42", qlonglong(42));
    expectValue(integerFromText, "-42", qlonglong(-42));
    expectValue(integerFromText, "+7", qlonglong(7));
    expectValue(integerFromText, "-0", qlonglong(0));
}

TEST_F(PropertyListScalarsTest, Integer_LeadingZeroIsNotOctal) {
    expectValue(integerFromText, "010", qlonglong(10));
}

TEST_F(PropertyListScalarsTest, Integer_WhiteSpaceAroundIsSkipped) {
    expectValue(integerFromText, "\r\n\t 42 \n", qlonglong(42));
}

TEST_F(PropertyListScalarsTest, Integer_Hexadecimal) {
    expectValue(integerFromText, "0x1F", qlonglong(31));
    expectValue(integerFromText, "0Xff", qlonglong(255));
    expectValue(integerFromText, "-0x10", qlonglong(-16));
    expectValue(integerFromText, "0xFFFFFFFFFFFFFFFF", std::numeric_limits<qulonglong>::max());
}

TEST_F(PropertyListScalarsTest, Integer_WholeSignedRange) {
    expectValue(integerFromText, "9223372036854775807", std::numeric_limits<qlonglong>::max());
    expectValue(integerFromText, "-9223372036854775808", std::numeric_limits<qlonglong>::min());
}

TEST_F(PropertyListScalarsTest, Integer_AboveSignedRangeIsUnsigned) {
    expectValue(integerFromText, "9223372036854775808", qulonglong(9223372036854775808U));
    expectValue(integerFromText, "18446744073709551615", std::numeric_limits<qulonglong>::max());
}

TEST_F(PropertyListScalarsTest, Integer_OutOfRangeIsRefused) {
    expectRefused(integerFromText, {"18446744073709551616", "-9223372036854775809",
                                    "0x10000000000000000", "-0x8000000000000001"});
    EXPECT_FALSE(integerFromText(QString(1'000'000, u'9')));
}

TEST_F(PropertyListScalarsTest, Integer_AnythingElseIsRefused) {
    expectRefused(integerFromText,
                  {"",      " ",    "-",    "+",      "0x",  "x1F",     "1 2",
                   "1.0",   "1e3",  "--1",  "+-1",    "-+1", "- 1",     "1_000",
                   "1,000", "0x1G", "0x-1", "twelve", "٣",   "\u00A01", "1\u00A0"});
}

TEST_F(PropertyListScalarsTest, Real_Decimal) {
    expectValue(realFromText, "0.5", 0.5);
    expectValue(realFromText, " -12.25\n", -12.25);
    expectValue(realFromText, "+1", 1.0);
    expectValue(realFromText, ".5", 0.5);
    expectValue(realFromText, "5.", 5.0);
    expectValue(realFromText, "1e3", 1000.0);
    expectValue(realFromText, "-1.5E-3", -0.0015);
    expectValue(realFromText, "-0", -0.0);
}

TEST_F(PropertyListScalarsTest, Real_NamedValuesInAnyCase) {
    for (const char* name : {"inf", "Inf", "INFINITY", "infinity", "+infinity"}) {
        expectValue(realFromText, name, infinity);
    }
    for (const char* name : {"-inf", "-Infinity"}) {
        expectValue(realFromText, name, -infinity);
    }
    for (const char* name : {"nan", "NaN", "NAN"}) {
        expectValue(realFromText, name, std::numeric_limits<double>::quiet_NaN());
    }
}

TEST_F(PropertyListScalarsTest, Real_OutOfRangeIsRefused) {
    expectRefused(realFromText, {"1e999", "-1e999", "1e-999", "1e99999999999999999999"});
    EXPECT_FALSE(realFromText(QString(1'000'000, u'9')));
}

TEST_F(PropertyListScalarsTest, Real_AnythingElseIsRefused) {
    expectRefused(realFromText, {"", " ", ".", "-", "1,5", "1.5.2", "1e", "1e+", "0x1p3", "--1",
                                 "+-1", "1_0", "1 2", "infinit", "nan(1)", "one", "٣.٥", "1.5f"});
}

TEST_F(PropertyListScalarsTest, Real_ReadsBackToTheSameBits) {
    std::mt19937_64 random(1); // the same numbers in every run
    for (int i = 0; i < 10'000; ++i) {
        const auto value = std::bit_cast<double>(random());
        const auto again = realFromText(realToText(value));
        ASSERT_TRUE(again) << value;
        EXPECT_EQ(describe(*again), describe(std::isnan(value) ? std::abs(value) : value));
    }
}

TEST_F(PropertyListScalarsTest, Real_IsWrittenShort) {
    EXPECT_EQ(realToText(0.1), text("0.1"));
    EXPECT_EQ(realToText(72.0), text("72"));
    EXPECT_EQ(realToText(-0.0), text("-0"));
    EXPECT_EQ(realToText(1e300), text("1e+300"));
    EXPECT_EQ(realToText(std::numeric_limits<double>::denorm_min()), text("5e-324"));
    EXPECT_EQ(realToText(-infinity), text("-inf"));
    EXPECT_EQ(realToText(-std::numeric_limits<double>::quiet_NaN()), text("nan"));
}

TEST_F(PropertyListScalarsTest, Real_DoesNotDependOnTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(realToText(1234.5), text("1234.5"));
    expectValue(realFromText, "1234.5", 1234.5);
    expectRefused(realFromText, {"1234,5", "1.234,5"});
    QLocale::setDefault(before);
}

TEST_F(PropertyListScalarsTest, Date_IsUtc) {
    expectValue(dateFromText, "2024-02-29T12:34:56Z", utc(2024, 2, 29, 12, 34, 56));
    expectValue(dateFromText, "\n 0001-01-01T00:00:00Z ", utc(1, 1, 1, 0, 0, 0));
    expectValue(dateFromText, "9999-12-31T23:59:59Z", utc(9999, 12, 31, 23, 59, 59));
    EXPECT_EQ(dateFromText(text("2024-02-29T12:34:56Z"))->toDateTime().timeSpec(), Qt::UTC);
}

TEST_F(PropertyListScalarsTest, Date_ThatDoesNotExistIsRefused) {
    expectRefused(dateFromText,
                  {"2023-02-29T12:00:00Z", "2024-13-01T00:00:00Z", "2024-00-01T00:00:00Z",
                   "2024-04-31T00:00:00Z", "2024-01-01T24:00:00Z", "2024-01-01T12:60:00Z",
                   "2024-01-01T12:00:60Z", "0000-01-01T00:00:00Z"});
}

TEST_F(PropertyListScalarsTest, Date_InAnyOtherFormIsRefused) {
    expectRefused(dateFromText,
                  {"", "Z", "2024-01-01", "2024Z", "2024-01-01T12:00:00", "2024-01-01 12:00:00Z",
                   "2024-01-01T12:00:00z", "2024-01-01T12:00:00.5Z", "2024-01-01T12:00:00+00:00",
                   "2024-1-1T12:00:00Z", "24-01-01T12:00:00Z", "12024-01-01T12:00:00Z",
                   "2024-01-01T12:00Z", "2024-01-01T12:00:00ZZ", "-2024-01-01T12:00:00Z",
                   "٢٠٢٤-01-01T12:00:00Z", "2024-01-01T12:00:00Z\u00A0"});
}

TEST_F(PropertyListScalarsTest, Date_OfAnyTimeZoneIsWrittenInUtc) {
    const QDateTime noon = utc(2024, 6, 30, 12, 0, 0);
    EXPECT_EQ(dateToText(noon), text("2024-06-30T12:00:00Z"));
    EXPECT_EQ(dateToText(noon.toOffsetFromUtc(5 * 3600)), text("2024-06-30T12:00:00Z"));
    EXPECT_EQ(dateToText(noon.toLocalTime()), text("2024-06-30T12:00:00Z"));
    EXPECT_EQ(dateToText(noon.toTimeZone(QTimeZone(-9 * 3600))), text("2024-06-30T12:00:00Z"));
}

TEST_F(PropertyListScalarsTest, Date_LosesTheFractionOfTheSecond) {
    EXPECT_EQ(dateToText(utc(2024, 6, 30, 12, 0, 0).addMSecs(999)), text("2024-06-30T12:00:00Z"));
    EXPECT_EQ(dateToText(utc(1960, 1, 1, 0, 0, 1).addMSecs(999)), text("1960-01-01T00:00:01Z"));
}

TEST_F(PropertyListScalarsTest, Date_WithoutTextForm) {
    EXPECT_FALSE(dateToText(QDateTime()));
    EXPECT_FALSE(dateToText(utc(2023, 2, 29, 12, 0, 0)));
    EXPECT_FALSE(dateToText(utc(10000, 1, 1, 0, 0, 0)));
    EXPECT_FALSE(dateToText(utc(-1, 1, 1, 0, 0, 0)));
    EXPECT_FALSE(dateToText(utc(9999, 12, 31, 23, 0, 0).toOffsetFromUtc(0).addSecs(3600)));
}

TEST_F(PropertyListScalarsTest, Data_IsBase64) {
    expectValue(dataFromText, "", QByteArray(""));
    expectValue(dataFromText, " \n\t\r ", QByteArray(""));
    expectValue(dataFromText, "QUJD", QByteArray("ABC"));
    expectValue(dataFromText, "QUI=", QByteArray("AB"));
    expectValue(dataFromText, "QQ==", QByteArray("A"));
    expectValue(dataFromText, "+/8=", QByteArray("\xFB\xFF"));
}

TEST_F(PropertyListScalarsTest, Data_MayBeBrokenAnywhere) {
    expectValue(dataFromText, "\n\tQ\n\tU J\r\nD\n", QByteArray("ABC"));
    expectValue(dataFromText, "QQ=\n=", QByteArray("A"));
}

TEST_F(PropertyListScalarsTest, Data_ThatIsNotBase64IsRefused) {
    expectRefused(dataFromText, {"Q", "QU", "QUI", "QQ=", "Q===", "====", "=", "QU=I", "QQ==QQ==",
                                 "QU-_", "QUJD!", "QUJ\u00A0", "QUJä", "QUJ\u0141", "QUJD="});
}

} // namespace quorvane::test
