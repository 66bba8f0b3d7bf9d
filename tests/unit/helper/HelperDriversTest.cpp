#include "apps/helper/CpufreqBoost.h"
#include "apps/helper/IntelPstateTurbo.h"
#include "apps/helper/PlatformProfile.h"
#include "apps/helper/PolicyBoost.h"
#include "tests/support/RecordingLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvane::test {
namespace {

constexpr const char* noTurbo = "devices/system/cpu/intel_pstate/no_turbo";
constexpr const char* boost = "devices/system/cpu/cpufreq/boost";
constexpr const char* profile = "firmware/acpi/platform_profile";
constexpr const char* profileChoices = "firmware/acpi/platform_profile_choices";

QString policyBoost(int number) {
    return QStringLiteral("devices/system/cpu/cpufreq/policy%1/boost").arg(number);
}

/// The helper's drivers over a folder like /sys, and the journal that they write.
class HelperDriversTest : public testing::Test {
  protected:
    void put(const QString& attribute, const char* value) const {
        const QString path = sysfs() + QLatin1Char('/') + attribute;
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(value);
        file.write("\n");
    }

    void put(const char* attribute, const char* value) const {
        put(QString::fromLatin1(attribute), value);
    }

    [[nodiscard]] std::string value(const QString& attribute) const {
        return attributes.read(attribute).value_or(QStringLiteral("(none)")).toStdString();
    }

    [[nodiscard]] std::string value(const char* attribute) const {
        return value(QString::fromLatin1(attribute));
    }

    [[nodiscard]] QString sysfs() const { return folder.filePath(QStringLiteral("sys")); }

    [[nodiscard]] QString journalPath() const {
        return folder.filePath(QStringLiteral("run/journal"));
    }

    template <class D>
    [[nodiscard]] D driver() {
        return D(attributes, journal, log);
    }

    static Outcome engage(Driver& driver) {
        Outcome result;
        driver.engage([&result](const Outcome& outcome) { result = outcome; });
        return result;
    }

    static Outcome release(Driver& driver) {
        Outcome result;
        driver.release([&result](const Outcome& outcome) { result = outcome; });
        return result;
    }

    void leaveEntry(const char* attribute, const char* found, const char* set) {
        PuttingBackJournal dead(journalPath(), log, {1, 1}); // nobody's start time
        ASSERT_TRUE(dead.update([&](PuttingBackJournal::Entries& entries) {
            entries.push_back({QStringLiteral("attribute"), QString::fromLatin1(attribute),
                               QString::fromLatin1(found), QString::fromLatin1(set), dead.self()});
        }));
    }

    [[nodiscard]] std::size_t entriesLeft() { return journal.entries()->size(); }

    QTemporaryDir folder;
    RecordingLog log;
    KernelAttributes attributes{folder.filePath(QStringLiteral("sys"))};
    PuttingBackJournal journal{folder.filePath(QStringLiteral("run/journal")), log};
};

TEST_F(HelperDriversTest, IntelPstate_IsThereOnlyWithItsAttribute) {
    IntelPstateTurbo turbo(attributes, journal, log);
    EXPECT_FALSE(turbo.probe());
    put(noTurbo, "0");
    EXPECT_TRUE(turbo.probe());
}

TEST_F(HelperDriversTest, IntelPstate_SwitchesTurboOffAndOnAgain) {
    put(noTurbo, "0");
    IntelPstateTurbo turbo(attributes, journal, log);
    EXPECT_TRUE(engage(turbo).done);
    EXPECT_EQ(value(noTurbo), "1");
    EXPECT_EQ(entriesLeft(), 1U);
    EXPECT_TRUE(release(turbo).done);
    EXPECT_EQ(value(noTurbo), "0");
    EXPECT_EQ(entriesLeft(), 0U);
}

TEST_F(HelperDriversTest, GlobalBoost_SwitchesTurboOffAndOnAgain) {
    put(boost, "1");
    CpufreqBoost turbo(attributes, journal, log);
    ASSERT_TRUE(turbo.probe());
    EXPECT_TRUE(engage(turbo).done);
    EXPECT_EQ(value(boost), "0");
    EXPECT_TRUE(release(turbo).done);
    EXPECT_EQ(value(boost), "1");
}

TEST_F(HelperDriversTest, BoostOfEachPolicy_IsPutBackToWhatEachOneHeld) {
    put(policyBoost(0), "1");
    put(policyBoost(1), "0");
    put(policyBoost(12), "1");
    PolicyBoost turbo(attributes, journal, log);
    ASSERT_TRUE(turbo.probe());
    EXPECT_TRUE(engage(turbo).done);
    for (const int each : {0, 1, 12}) {
        EXPECT_EQ(value(policyBoost(each)), "0") << each;
    }
    EXPECT_TRUE(release(turbo).done);
    EXPECT_EQ(value(policyBoost(0)), "1");
    EXPECT_EQ(value(policyBoost(1)), "0");
    EXPECT_EQ(value(policyBoost(12)), "1");
}

TEST_F(HelperDriversTest, PoliciesWithoutBoost_AreNoSwitch) {
    put("devices/system/cpu/cpufreq/policy0/scaling_governor", "powersave");
    EXPECT_FALSE(PolicyBoost(attributes, journal, log).probe());
}

TEST_F(HelperDriversTest, OneOfThePoliciesCannotBeWritten_NoneStaysChanged) {
    put(policyBoost(0), "1");
    put(policyBoost(1), "1");
    // Whatever is written there, something else is read: as of a driver with a mind of its own.
    QFile::remove(sysfs() + QLatin1Char('/') + policyBoost(1));
    ASSERT_TRUE(
        QFile::link(QStringLiteral("/dev/null"), sysfs() + QLatin1Char('/') + policyBoost(1)));
    put(policyBoost(2), "nonsense");
    PolicyBoost turbo(attributes, journal, log);
    const Outcome outcome = engage(turbo);
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(outcome.text.toStdString(),
              "devices/system/cpu/cpufreq/policy2/boost: it cannot be read");
    EXPECT_EQ(value(policyBoost(0)), "1");
    EXPECT_EQ(entriesLeft(), 0U);
}

TEST_F(HelperDriversTest, TurboThatIsOffAlready_IsNotSwitchedOnAfterwards) {
    put(noTurbo, "1");
    IntelPstateTurbo turbo(attributes, journal, log);
    EXPECT_TRUE(engage(turbo).done);
    EXPECT_EQ(entriesLeft(), 0U);
    EXPECT_TRUE(release(turbo).done);
    EXPECT_EQ(value(noTurbo), "1");
}

TEST_F(HelperDriversTest, ValueThatSomebodyChangedMeanwhile_IsLeftAlone) {
    put(profileChoices, "low-power balanced performance");
    put(profile, "balanced");
    PlatformProfile firmware(attributes, journal, log);
    EXPECT_TRUE(engage(firmware).done);
    EXPECT_EQ(value(profile), "low-power");
    put(profile, "performance");
    EXPECT_TRUE(release(firmware).done);
    EXPECT_EQ(value(profile), "performance");
    EXPECT_EQ(entriesLeft(), 0U);
    EXPECT_TRUE(log.contains("left alone"));
}

TEST_F(HelperDriversTest, ProfilesWithoutALowPowerOne_UseTheQuietOne) {
    put(profileChoices, "quiet balanced performance");
    put(profile, "performance");
    PlatformProfile firmware(attributes, journal, log);
    ASSERT_TRUE(firmware.probe());
    EXPECT_TRUE(engage(firmware).done);
    EXPECT_EQ(value(profile), "quiet");
    EXPECT_TRUE(release(firmware).done);
    EXPECT_EQ(value(profile), "performance");
}

TEST_F(HelperDriversTest, ProfilesWithoutASlowOne_AreNoSwitch) {
    put(profileChoices, "balanced performance");
    put(profile, "balanced");
    EXPECT_FALSE(PlatformProfile(attributes, journal, log).probe());
}

TEST_F(HelperDriversTest, FoundValueThatCannotBeRecorded_NothingIsChanged) {
    put(noTurbo, "0");
    QFile inTheWay(folder.filePath(QStringLiteral("run")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    IntelPstateTurbo turbo(attributes, journal, log);
    const Outcome outcome = engage(turbo);
    EXPECT_FALSE(outcome.done);
    EXPECT_TRUE(outcome.text.contains(QLatin1String("nothing was changed")))
        << outcome.text.toStdString();
    EXPECT_EQ(value(noTurbo), "0");
}

TEST_F(HelperDriversTest, DeadRun_ItsChangeIsPutBack) {
    put(noTurbo, "1");
    leaveEntry(noTurbo, "0", "1");
    IntelPstateTurbo(attributes, journal, log).putBackLeftovers();
    EXPECT_EQ(value(noTurbo), "0");
    EXPECT_EQ(entriesLeft(), 0U);
}

TEST_F(HelperDriversTest, DeadRunWhoseValueIsNoLongerThere_IsLeftAlone) {
    put(noTurbo, "0");
    leaveEntry(noTurbo, "0", "1");
    IntelPstateTurbo(attributes, journal, log).putBackLeftovers();
    EXPECT_EQ(value(noTurbo), "0");
    EXPECT_EQ(entriesLeft(), 0U);
}

TEST_F(HelperDriversTest, DeadRunOnAProcessorThatIsGone_IsStruckOff) {
    leaveEntry("devices/system/cpu/cpufreq/policy3/boost", "1", "0");
    PolicyBoost(attributes, journal, log).putBackLeftovers();
    EXPECT_EQ(entriesLeft(), 0U);
}

TEST_F(HelperDriversTest, JournalThatNamesAnotherFile_NothingIsWrittenThere) {
    put("devices/secret", "1");
    put("devices/system/cpu/cpufreq/policy0/boost", "1");
    leaveEntry("devices/secret", "0", "1");
    leaveEntry("devices/system/cpu/cpufreq/policy0/../../../../secret", "0", "1");
    leaveEntry("devices/system/cpu/cpufreq/policy/boost", "0", "1");
    PolicyBoost(attributes, journal, log).putBackLeftovers();
    IntelPstateTurbo(attributes, journal, log).putBackLeftovers();
    EXPECT_EQ(value("devices/secret"), "1");
}

TEST_F(HelperDriversTest, JournalWithAValueThatTheAttributeCannotHold_IsNotWritten) {
    put(noTurbo, "1");
    leaveEntry(noTurbo, "rm -rf", "1");
    IntelPstateTurbo(attributes, journal, log).putBackLeftovers();
    EXPECT_EQ(value(noTurbo), "1");
}

TEST_F(HelperDriversTest, EntryOfAProcessThatStillRuns_IsNotTouched) {
    put(noTurbo, "1");
    PuttingBackJournal parents(journalPath(), log, JournalWriter::self());
    ASSERT_TRUE(parents.update([&](PuttingBackJournal::Entries& entries) {
        entries.push_back({QStringLiteral("attribute"), QString::fromLatin1(noTurbo),
                           QStringLiteral("0"), QStringLiteral("1"), parents.self()});
    }));
    PuttingBackJournal others(journalPath(), log, {1, 1});
    IntelPstateTurbo(attributes, others, log).putBackLeftovers();
    EXPECT_EQ(value(noTurbo), "1");
    EXPECT_EQ(entriesLeft(), 1U);
}

TEST_F(HelperDriversTest, AttributeThatIsALink_IsNeitherReadNorWritten) {
    QFile target(folder.filePath(QStringLiteral("target")));
    ASSERT_TRUE(target.open(QIODevice::ReadWrite));
    target.write("0\n");
    target.flush();
    QDir().mkpath(sysfs() + QStringLiteral("/devices"));
    ASSERT_TRUE(QFile::link(target.fileName(), sysfs() + QStringLiteral("/devices/link")));
    const QString attribute = QStringLiteral("devices/link");
    EXPECT_FALSE(attributes.read(attribute));
    EXPECT_TRUE(attributes.write(attribute, QStringLiteral("1")));
    target.seek(0);
    EXPECT_EQ(target.readAll(), "0\n");
}

TEST_F(HelperDriversTest, ShorterValue_LeavesNothingOfALongerOne) {
    put(profile, "performance");
    EXPECT_FALSE(attributes.write(QString::fromLatin1(profile), QStringLiteral("quiet")));
    EXPECT_EQ(value(profile), "quiet");
}

} // namespace
} // namespace quorvane::test
