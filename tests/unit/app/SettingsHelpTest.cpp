#include "app/SettingsHelp.h"

#include "mode/SettingsList.h"
#include "tests/support/QtPrinters.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace quorvane::test {

namespace {

QStringList lines() {
    return settingsHelp().split(QLatin1Char('\n'));
}

} // namespace

TEST(SettingsHelpTest, SettingsOfUsersAndNoOthers_AreListedInTheirOrder) {
    QStringList expected;
    for (const Setting& each : settingsList()) {
        if (each.isForUsers()) {
            expected.append(
                QStringLiteral("%1=%2").arg(QLatin1String(each.key), QLatin1String(each.values)));
        }
    }
    QStringList listed;
    for (const QString& line : lines()) {
        if (!line.startsWith(QLatin1String("   "))) {
            listed.append(line.trimmed().section(QStringLiteral("  "), 0, 0));
        }
    }
    EXPECT_EQ(listed, expected);
    EXPECT_TRUE(listed.contains(QStringLiteral("AppNapModuleTimeInterval=minutes")));
}

TEST(SettingsHelpTest, TextsAndStandardValues_StandBesideTheKeysAndAreWrapped) {
    const QString help = settingsHelp();
    for (const char* const part :
         {"  BatteryThreshold=percent                [70] the charge at which Quorvane asks\n"
          "                                          or acts\n",
          "  TurboModuleActivated=true|false         [true] whether the mode slows the\n"
          "                                          processor down\n",
          "  BrowserModuleControlFirefox=true|false  [true] whether it pauses Firefox\n"}) {
        EXPECT_TRUE(help.contains(QLatin1String(part))) << part << "\nin\n" << help.toStdString();
    }
}

TEST(SettingsHelpTest, Lines_FitIntoEightyColumnsAndTheLastHasNoEnd) {
    for (const QString& line : lines()) {
        EXPECT_LE(line.size(), 80) << line.toStdString();
        EXPECT_FALSE(line.trimmed().isEmpty());
    }
}

} // namespace quorvane::test
