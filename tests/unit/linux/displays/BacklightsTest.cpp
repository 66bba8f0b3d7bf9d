#include "platform/linux/displays/Backlights.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cerrno>

namespace quorvane::test {
namespace {

class BacklightsTest : public testing::Test {
  protected:
    void write(const char* device, const char* attribute, const QByteArray& value) const {
        const QString path = folder(device);
        QDir().mkpath(path);
        QFile file(path + QLatin1Char('/') + QLatin1String(attribute));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(value + '\n');
    }

    void add(const char* device, const char* type, const QByteArray& raw,
             const QByteArray& maximum) const {
        write(device, "type", type);
        write(device, "brightness", raw);
        write(device, "max_brightness", maximum);
    }

    [[nodiscard]] QString folder(const char* device) const {
        return sysfs.filePath(QStringLiteral("class/backlight/") + QLatin1String(device));
    }

    QTemporaryDir sysfs;
    Backlights backlights{sysfs.path()};
    const QString panel = QStringLiteral("panel");
};

TEST_F(BacklightsTest, NoClass_NoDevices) {
    EXPECT_TRUE(backlights.names().isEmpty());
    EXPECT_FALSE(backlights.raw(panel));
    EXPECT_EQ(backlights.setRaw(panel, 1), ENOENT);
}

TEST_F(BacklightsTest, Order_IsFirmwarePlatformRawAndThenTheName) {
    add("b_raw", "raw", "1", "10");
    add("a_raw", "raw", "1", "10");
    add("z_firmware", "firmware", "1", "10");
    add("m_platform", "platform", "1", "10");
    add("a_odd", "other", "1", "10");
    EXPECT_EQ(
        backlights.names(),
        (QStringList{QStringLiteral("z_firmware"), QStringLiteral("m_platform"),
                     QStringLiteral("a_raw"), QStringLiteral("b_raw"), QStringLiteral("a_odd")}));
}

TEST_F(BacklightsTest, DeviceThatTellsNoBrightness_IsNotListed) {
    add("panel", "raw", "1", "0");
    add("second", "raw", "garbage", "10");
    add("third", "raw", "-1", "10");
    EXPECT_TRUE(backlights.names().isEmpty());
}

TEST_F(BacklightsTest, BrightnessUnreadable_TheActualOneCounts) {
    add("panel", "raw", "", "10");
    write("panel", "actual_brightness", "4");
    EXPECT_EQ(backlights.raw(panel), 4);
    write("panel", "brightness", "5");
    EXPECT_EQ(backlights.raw(panel), 5);
}

TEST_F(BacklightsTest, SetRaw_ReplacesTheWholeFile) {
    add("panel", "raw", "700", "1000");
    EXPECT_EQ(backlights.setRaw(panel, 55), 0);
    EXPECT_EQ(backlights.raw(panel), 55);
}

TEST_F(BacklightsTest, SetRawWhereNothingCanBeWritten_GivesTheReason) {
    QDir().mkpath(folder("panel") + QStringLiteral("/brightness"));
    EXPECT_EQ(backlights.setRaw(panel, 55), EISDIR);
}

} // namespace
} // namespace quorvane::test
