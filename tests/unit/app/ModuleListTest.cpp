#include "app/ModuleList.h"

#include "core/QuorvanePrefs.h"
#include "mode/BatterySaver.h"
#include "mode/SettingsList.h"
#include "modules/TurboModule.h"
#include "tests/support/QtPrinters.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <QDir>

#include <algorithm>

namespace quorvane::test {

namespace {

class ModuleListTest : public SimulatedLaptopTest {
  protected:
    ModuleListTest() { registerDefaults(); }

    static QStringList identifiers(const ModuleList& modules) {
        QStringList identifiers;
        for (const auto& each : modules) {
            identifiers.append(each->identifier());
        }
        return identifiers;
    }
};

} // namespace

TEST_F(ModuleListTest, OrderOfModules_IsWhatTheUserNoticesFirstAndTheProcessorLast) {
    const QStringList all{
        QStringLiteral("BrightnessModule"), QStringLiteral("TopAppsModule"),
        QStringLiteral("ServicesModule"),   QStringLiteral("BrowserModule"),
        QStringLiteral("AppNapModule"),     QStringLiteral("TurboModule"),
    };
    const QStringList notYetThere{QStringLiteral("TopAppsModule"),
                                  QStringLiteral("ServicesModule")};
    QStringList expected = all;
    expected.removeIf([&](const QString& each) { return notYetThere.contains(each); });
    EXPECT_EQ(identifiers(makeModules()), expected);
}

TEST_F(ModuleListTest, OrderOfModules_HasTurboLastAlthoughItIsMadeFirst) {
    qsizetype modulesMadeBefore = -1;
    laptop().operatingSystem().version13OrLater = true;
    laptop().operatingSystem().machineName = QStringLiteral("x86_64");
    laptop().helperInstaller().setInstalled(true);
    laptop().helperInstaller().setSendListener([&](const QString&) {
        // Each module observes its own setting from its creation on.
        if (modulesMadeBefore < 0) {
            modulesMadeBefore = static_cast<qsizetype>(QuorvanePrefs::observers().size());
        }
    });
    EXPECT_EQ(identifiers(makeModules()).last(), QStringLiteral("TurboModule"));
    EXPECT_EQ(modulesMadeBefore, 1) << "its own setting alone";
}

TEST_F(ModuleListTest, OrderOfModules_IsTheOneInWhichTheModeSwitchesThem) {
    start();
    const ModuleList& modules = BatterySaver::batterySaver().modules();
    EXPECT_EQ(identifiers(modules), identifiers(makeModules()));
    EXPECT_EQ(BatterySaver::batterySaver().turboModule(), modules.back().get());
    EXPECT_NE(dynamic_cast<TurboModule*>(modules.back().get()), nullptr);
}

TEST_F(ModuleListTest, EveryModuleThatIsWritten_IsInTheList) {
    QStringList written;
    for (const QString& file : QDir(QStringLiteral(QUORVANE_SOURCE_DIR "/modules"))
                                   .entryList({QStringLiteral("*Module.h")}, QDir::Files)) {
        written.append(file.chopped(2));
    }
    QStringList listed = identifiers(makeModules());
    listed.sort();
    EXPECT_EQ(listed, written) << "app/ModuleList.cpp is to make them";
}

TEST_F(ModuleListTest, EveryModule_HasASwitchThatUsersCanReadAbout) {
    const auto settings = settingsList();
    for (const auto& module : makeModules()) {
        const QString key = module->enabledSetting();
        const auto found =
            std::find_if(settings.begin(), settings.end(),
                         [&key](const Setting& each) { return key == QLatin1String(each.key); });
        ASSERT_NE(found, settings.end()) << "mode/SettingsList.cpp lacks " << key.toStdString();
        EXPECT_TRUE(found->isForUsers()) << found->key;
        EXPECT_TRUE(std::holds_alternative<bool>(found->standard)) << found->key;
    }
}

} // namespace quorvane::test
