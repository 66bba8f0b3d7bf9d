#include "core/QuorvanePrefs.h"

#include "core/DefaultsController.h"
#include "core/UserDefaults.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <gmock/gmock.h>

namespace quorvane::test {

/// An object with one property of each kind that settings have.
class Gadget : public ObservableObject {
    Q_OBJECT
    Q_PROPERTY(bool on READ on WRITE setOn)
    Q_PROPERTY(int level READ level WRITE setLevel)
    Q_PROPERTY(float amount READ amount WRITE setAmount)

  public:
    [[nodiscard]] bool on() const { return on_; }

    [[nodiscard]] int level() const { return level_; }

    [[nodiscard]] float amount() const { return amount_; }

    void setOn(bool on) { setObserved(on_, on, QStringLiteral("on")); }

    void setLevel(int level) { setObserved(level_, level, QStringLiteral("level")); }

    void setAmount(float amount) { setObserved(amount_, amount, QStringLiteral("amount")); }

  private:
    bool on_ = false;
    int level_ = 0;
    float amount_ = 0.0F;
};

namespace {

class QuorvanePrefsTest : public SimulatedLaptopTest {
  protected:
    Gadget gadget;

    void bind(const char* property, const char* key) {
        QuorvanePrefs::bindKey(QString::fromLatin1(property), gadget, QString::fromLatin1(key));
    }

    [[nodiscard]] int writes(const char* key) {
        return settings().writes(QString::fromLatin1(key));
    }
};

} // namespace

TEST_F(QuorvanePrefsTest, InsideTheApplication_UsesItsOwnStore) {
    UserDefaults& own = QuorvanePrefs::userDefaults();
    EXPECT_EQ(&own, &QuorvanePrefs::userDefaults());
    EXPECT_EQ(&own.domain(), &settings());
}

TEST_F(QuorvanePrefsTest, InAnyOtherHost_UsesTheSuiteStoreAndTheSameEveryTime) {
    UserDefaults& own = QuorvanePrefs::userDefaults();
    for (const char* host : {"com.example.settings", "com.tarnwick.quorvane-setapp", ""}) {
        laptop().bundle().setIdentifier(QString::fromLatin1(host));
        UserDefaults& suite = QuorvanePrefs::userDefaults();
        EXPECT_NE(&suite, &own);
        EXPECT_EQ(&suite, &QuorvanePrefs::userDefaults());
        EXPECT_EQ(&suite.domain(), &settings());
    }
}

TEST_F(QuorvanePrefsTest, WriteInAnotherHost_LandsInTheApplicationsDomain) {
    laptop().bundle().setIdentifier(QStringLiteral("com.example.settings"));
    EXPECT_TRUE(QuorvanePrefs::setNumberValue(40, QStringLiteral("BatteryThreshold")));
    EXPECT_EQ(stored("BatteryThreshold"), QVariant(QStringLiteral("40")));
}

TEST_F(QuorvanePrefsTest, SettingABoundBoolProperty_WritesItsKeyAtOnce) {
    bind("on", "BrowserModuleActivated");
    gadget.setOn(true);
    EXPECT_TRUE(stored("BrowserModuleActivated").toBool());
    EXPECT_TRUE(QuorvanePrefs::userDefaults().boolForKey(QStringLiteral("BrowserModuleActivated")));
}

TEST_F(QuorvanePrefsTest, BoundKeyWithoutValue_LeavesThePropertyAtFalse) {
    bind("on", "BrowserModuleActivated");
    EXPECT_FALSE(gadget.on());
    EXPECT_FALSE(stored("BrowserModuleActivated").isValid());
}

TEST_F(QuorvanePrefsTest, SetStringValue_StoresTheString) {
    EXPECT_TRUE(
        QuorvanePrefs::setStringValue(QStringLiteral("a@b.example"), QStringLiteral("usersEmail")));
    EXPECT_EQ(stored("usersEmail"), QVariant(QStringLiteral("a@b.example")));
}

TEST_F(QuorvanePrefsTest, Binding_LoadsTheStoredValueAtOnce) {
    store("BatteryThreshold", 33);
    bind("level", "BatteryThreshold");
    EXPECT_EQ(gadget.level(), 33);
}

TEST_F(QuorvanePrefsTest, Binding_LoadsTheRegisteredValueAndDoesNotStoreIt) {
    registerDefaults();
    bind("level", "BatteryThreshold");
    bind("amount", "BrightnessModuleAmount");
    EXPECT_EQ(gadget.level(), 70);
    EXPECT_EQ(gadget.amount(), 50.0F);
    EXPECT_FALSE(stored("BatteryThreshold").isValid());
    EXPECT_FALSE(stored("BrightnessModuleAmount").isValid());
}

TEST_F(QuorvanePrefsTest, ChangeByAnotherProcess_ReachesThePropertyAndIsNotWrittenAgain) {
    bind("level", "BatteryThreshold");
    store("BatteryThreshold", 12);
    EXPECT_EQ(gadget.level(), 12);
    EXPECT_EQ(writes("BatteryThreshold"), 0);
}

TEST_F(QuorvanePrefsTest, KeyRemovedByAnotherProcess_FallsBackToTheRegisteredValue) {
    registerDefaults();
    store("BatteryThreshold", 12);
    bind("level", "BatteryThreshold");
    store("BatteryThreshold", QVariant());
    EXPECT_EQ(gadget.level(), 70);
}

TEST_F(QuorvanePrefsTest, SetToTheRegisteredValueByHand_IsStored) {
    registerDefaults();
    bind("level", "BatteryThreshold");
    gadget.setLevel(70);
    EXPECT_EQ(stored("BatteryThreshold"), QVariant(QStringLiteral("70")));
}

TEST_F(QuorvanePrefsTest, ManualAnnouncement_WritesTheCurrentValue) {
    bind("level", "BatteryThreshold");
    gadget.willChangeValueForKey(QStringLiteral("level"));
    gadget.didChangeValueForKey(QStringLiteral("level"));
    EXPECT_EQ(stored("BatteryThreshold"), QVariant(QStringLiteral("0")));
}

TEST_F(QuorvanePrefsTest, TwoPropertiesOfOneKey_FollowEachOther) {
    Gadget other;
    bind("level", "BatteryThreshold");
    QuorvanePrefs::bindKey(QStringLiteral("level"), other, QStringLiteral("BatteryThreshold"));
    gadget.setLevel(25);
    EXPECT_EQ(other.level(), 25);
    other.setLevel(26);
    EXPECT_EQ(gadget.level(), 26);
    EXPECT_EQ(writes("BatteryThreshold"), 2);
}

TEST_F(QuorvanePrefsTest, ObserverThatSetsAgain_IsStoredAndNotTakenForAnEcho) {
    bind("level", "BatteryThreshold");
    gadget.observe(QStringLiteral("level"), &gadget,
                   [this](const ObservableObject::Change& change) {
                       if (change.newValue.toInt() > 100) {
                           gadget.setLevel(100);
                       }
                   });
    store("BatteryThreshold", 400);
    EXPECT_EQ(gadget.level(), 100);
    EXPECT_EQ(stored("BatteryThreshold"), QVariant(QStringLiteral("100")));
}

TEST_F(QuorvanePrefsTest, DeadObject_IsNoLongerSet) {
    {
        Gadget shortLived;
        QuorvanePrefs::bindKey(QStringLiteral("level"), shortLived,
                               QStringLiteral("BatteryThreshold"));
    }
    store("BatteryThreshold", 12);
    EXPECT_EQ(stored("BatteryThreshold"), QVariant(QStringLiteral("12")));
}

TEST_F(QuorvanePrefsTest, EveryBinding_IsKept) {
    bind("level", "BatteryThreshold");
    bind("on", "QuorvaneActive");
    ASSERT_EQ(QuorvanePrefs::observers().size(), 2U);
    EXPECT_EQ(QuorvanePrefs::observers()[0]->prefKey(), QStringLiteral("BatteryThreshold"));
    EXPECT_EQ(QuorvanePrefs::observers()[1]->prefKey(), QStringLiteral("QuorvaneActive"));
}

TEST_F(QuorvanePrefsTest, StoreThatCannotBeWritten_SaysSoAndThePropertyKeepsItsValue) {
    bind("level", "BatteryThreshold");
    settings().setFailing(true);
    gadget.setLevel(5);
    EXPECT_EQ(gadget.level(), 5);
    EXPECT_FALSE(QuorvanePrefs::setNumberValue(6, QStringLiteral("BatteryThreshold")));
    store("QuorvaneActive", true);
    EXPECT_EQ(gadget.level(), 5);
}

TEST_F(QuorvanePrefsTest, ValueOfTheWrongKind_IsReportedAndTheDefaultUsed) {
    registerDefaults();
    for (const char* nonsense : {"many", "1e300", "-", "", "nan"}) {
        store("BatteryThreshold", QString::fromLatin1(nonsense));
        EXPECT_EQ(QuorvanePrefs::userDefaults().integerForKey(QStringLiteral("BatteryThreshold")),
                  70)
            << nonsense;
        EXPECT_EQ(logLines().last(),
                  QStringLiteral("The setting BatteryThreshold cannot be \"%1\"; the default is "
                                 "used instead.")
                      .arg(QString::fromLatin1(nonsense)));
    }
    store("QuorvaneAutoStartSetting", -1);
    EXPECT_EQ(QuorvanePrefs::userDefaults().valueForKey(QStringLiteral("QuorvaneAutoStartSetting"),
                                                        QMetaType::fromType<quint64>()),
              QVariant(quint64(1)));
}

TEST_F(QuorvanePrefsTest, BooleansByHand_AreReadInAllTheirSpellings) {
    const QString key = QStringLiteral("TurboModuleActivated");
    for (const char* yes : {"true", "TRUE", "1", "yes", "on", " true "}) {
        store("TurboModuleActivated", QString::fromLatin1(yes));
        EXPECT_TRUE(QuorvanePrefs::userDefaults().boolForKey(key)) << yes;
    }
    for (const char* no : {"false", "False", "0", "no", "off"}) {
        store("TurboModuleActivated", QString::fromLatin1(no));
        EXPECT_FALSE(QuorvanePrefs::userDefaults().boolForKey(key)) << no;
    }
}

TEST_F(QuorvanePrefsTest, Presence_IsWhatWasStoredNotWhatIsRegistered) {
    registerDefaults();
    UserDefaults& defaults = QuorvanePrefs::userDefaults();
    EXPECT_FALSE(defaults.isStored(QStringLiteral("BatteryThreshold")));
    EXPECT_TRUE(defaults.objectForKey(QStringLiteral("BatteryThreshold")).isValid());
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("WasEnabledOnQuit")).isValid());
    defaults.setInteger(70, QStringLiteral("BatteryThreshold"));
    EXPECT_TRUE(defaults.isStored(QStringLiteral("BatteryThreshold")));
}

TEST_F(QuorvanePrefsTest, Url_IsStoredAsTextAndReadBack) {
    const QUrl url = QUrl::fromLocalFile(QStringLiteral("/opt/Quorvane.app/ü b"));
    QuorvanePrefs::userDefaults().setURL(url, QStringLiteral("AppLocation"));
    EXPECT_EQ(stored("AppLocation").toString(),
              QStringLiteral("file:///opt/Quorvane.app/%C3%BC%20b"));
    EXPECT_EQ(QuorvanePrefs::userDefaults().URLForKey(QStringLiteral("AppLocation")), url);
}

} // namespace quorvane::test

#include "QuorvanePrefsTest.moc"
