#include "mode/SettingsList.h"

#include "core/QuorvanePrefs.h"
#include "core/UserDefaults.h"
#include "mode/RegisteredDefaults.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/SourceFile.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <QSet>
#include <gmock/gmock.h>

#include <algorithm>

namespace quorvane::test {

namespace {

class SettingsListTest : public SimulatedLaptopTest {
  protected:
    static bool isListed(const QString& key) {
        const auto settings = settingsList();
        return std::any_of(settings.begin(), settings.end(),
                           [&key](const Setting& each) { return key == QLatin1String(each.key); });
    }

    /// Each with its type, which comparing values does not tell.
    static QStringList typed(const QVariantMap& group) {
        QStringList values;
        for (auto each = group.begin(); each != group.end(); ++each) {
            values.append(QStringLiteral("%1=%2 %3")
                              .arg(each.key(), QLatin1String(each->typeName()), each->toString()));
        }
        return values;
    }
};

QString asCode(const QString& text) {
    return QLatin1Char('`') + text + QLatin1Char('`');
}

QString valuesForReadme(const Setting& setting) {
    QStringList values = QString::fromLatin1(setting.values).split(QLatin1Char('|'));
    if (values.size() > 1) {
        std::transform(values.begin(), values.end(), values.begin(), asCode);
    }
    return values.join(QStringLiteral(", "));
}

/// The table of README.md as it has to be.
QString tableForReadme() {
    QString table = QStringLiteral("| Key | Values | Without it | What it does |\n"
                                   "|---|---|---|---|\n");
    for (const Setting& each : settingsList()) {
        if (each.isForUsers()) {
            table += QStringLiteral("| %1 | %2 | %3 | %4 |\n")
                         .arg(asCode(QString::fromLatin1(each.key)), valuesForReadme(each),
                              asCode(each.standardValue().toString()), QLatin1String(each.help));
        }
    }
    return table;
}

/// The part of the text from the first "| Key" to the empty line after it.
QString tableIn(const QString& text) {
    const qsizetype begin = text.indexOf(QLatin1String("| Key "));
    return begin < 0 ? QString()
                     : text.mid(begin, text.indexOf(QLatin1String("\n\n"), begin) + 1 - begin);
}

} // namespace

TEST_F(SettingsListTest, ReadmesTable_IsTheList) {
    const QString readme = QString::fromUtf8(sourceFile(QStringLiteral("README.md")));
    const QString expected = tableForReadme();
    EXPECT_TRUE(tableIn(readme) == expected)
        << "Put this in the place of the table of settings in README.md:\n\n"
        << expected.toStdString();
}

TEST_F(SettingsListTest, EverySettingThatAnythingIsBoundTo_IsInTheList) {
    start();
    EXPECT_GE(QuorvanePrefs::observers().size(), 10U);
    for (const auto& each : QuorvanePrefs::observers()) {
        EXPECT_TRUE(isListed(each->prefKey()))
            << "Put this setting into mode/SettingsList.cpp: " << each->prefKey().toStdString();
    }
}

TEST_F(SettingsListTest, NoSetting_IsListedTwice) {
    QSet<QString> keys;
    for (const Setting& each : settingsList()) {
        const QString key = QString::fromLatin1(each.key);
        EXPECT_FALSE(keys.contains(key)) << each.key;
        keys.insert(key);
    }
}

TEST_F(SettingsListTest, SettingForUsers_SaysWhichValuesItTakes) {
    for (const Setting& each : settingsList()) {
        EXPECT_EQ(each.isForUsers() && *each.values == '\0', false) << each.key;
        const bool isSwitch = std::holds_alternative<bool>(each.standard);
        EXPECT_EQ(std::string_view(each.values) == "true|false", isSwitch && *each.values != '\0')
            << each.key;
    }
}

TEST_F(SettingsListTest, SettingWithoutALine_ReadsAsTheListSays) {
    registerDefaults();
    for (const Setting& each : settingsList()) {
        const QVariant expected = each.standardValue();
        QVariant read = QuorvanePrefs::userDefaults().objectForKey(QString::fromLatin1(each.key));
        EXPECT_EQ(read.isValid(), each.group != Setting::Group::Never) << each.key;
        if (!read.isValid()) {
            read = QVariant(expected.metaType());
        }
        EXPECT_EQ(read, expected) << each.key;
    }
}

TEST_F(SettingsListTest, RegisteredDefaults_AreFourGroupsInTheirOrderWithTheirTypes) {
    const std::vector<QVariantMap> groups = registeredDefaults();
    ASSERT_EQ(groups.size(), 4U);
    EXPECT_EQ(typed(groups[0]),
              (QStringList{QStringLiteral("QuorvaneIconSetting=uint 0"),
                           QStringLiteral("canContactUser=int 0"),
                           QStringLiteral("didShowEmailSheet=int 1"),
                           QStringLiteral("successfullySubmittedEmail=bool false"),
                           QStringLiteral("userDidSetEmail=bool false"),
                           QStringLiteral("usersEmail=QString ")}));
    EXPECT_EQ(typed(groups[1]), QStringList{QStringLiteral("QuorvaneActive=bool false")});
    EXPECT_EQ(typed(groups[2]), (QStringList{QStringLiteral("AppNapModuleActivated=bool false"),
                                             QStringLiteral("BrightnessModuleActivated=bool true"),
                                             QStringLiteral("ServicesModuleActivated=bool false"),
                                             QStringLiteral("TopAppsModuleActivated=bool true"),
                                             QStringLiteral("TurboModuleActivated=bool true")}));
    EXPECT_EQ(typed(groups[3]),
              (QStringList{QStringLiteral("AppNapModuleTimeInterval=int 5"),
                           QStringLiteral("BatteryThreshold=int 70"),
                           QStringLiteral("BrightnessModuleAmount=int 50"),
                           QStringLiteral("BrowserModuleControlChrome=bool true"),
                           QStringLiteral("BrowserModuleControlFirefox=bool true"),
                           QStringLiteral("BrowserModuleControlOpera=bool true"),
                           QStringLiteral("BrowserModuleControlSafari=bool true"),
                           QStringLiteral("MenuBarDisplayMode=int 0"),
                           QStringLiteral("QuorvaneAutoStartSetting=uint 1"),
                           QStringLiteral("ServicesModuleBluetooth=bool false"),
                           QStringLiteral("ServicesModuleSpotlight=bool true"),
                           QStringLiteral("TopAppsModuleSensitivity=int 50"),
                           QStringLiteral("TopAppsModuleTimeInterval=int 5")}));
}

} // namespace quorvane::test
