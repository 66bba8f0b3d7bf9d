#include "battery/BatteryHistory.h"

#include "battery/Battery.h"
#include "plist/PropertyList.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <initializer_list>

namespace quorvane::test {

namespace {

class BatteryHistoryTest : public SimulatedLaptopTest {
  protected:
    BatteryHistory& history() { return history_; }

    [[nodiscard]] QString path() {
        return laptop().files().applicationSupportFolder() +
               QStringLiteral("/Quorvane/Battery.plist");
    }

    [[nodiscard]] QDateTime hoursAgo(double hours) {
        return laptop().clock().now().addMSecs(static_cast<qint64>(-hours * 3600e3));
    }

    // One sample each, its percentage being the hours.
    void addSamples(std::initializer_list<int> hours) {
        for (const int each : hours) {
            history_.append(each, hoursAgo(each));
        }
    }

    bool save() { return history_.saveData(laptop().clock().now()); }

    [[nodiscard]] QVariantMap savedRoot() {
        return readPropertyList(laptop().files().files().value(path())).value.value().toMap();
    }

    [[nodiscard]] QVariantList savedPoints() {
        return savedRoot().value(QStringLiteral("dataPoints")).toList();
    }

    void put(const char* dictionary) {
        laptop().files().put(path(), QByteArray("<?xml version=\"1.0\"?><plist version=\"1.0\">") +
                                         dictionary + "</plist>");
    }

  private:
    BatteryHistory history_{path()};
};

} // namespace

TEST_F(BatteryHistoryTest, SamplesOnBothSidesOfTheCutoff_KeepTheAnchorAndDropTheNewest) {
    addSamples({7, 5, 3, 1});
    ASSERT_TRUE(save());
    EXPECT_EQ(savedPoints(), (QVariantList{7LL, 5LL, 3LL}));
    EXPECT_EQ(savedRoot().value(QStringLiteral("dataTimes")).toList(),
              (QVariantList{hoursAgo(7), hoursAgo(5), hoursAgo(3)}));
    EXPECT_EQ(savedRoot().size(), 2);
}

TEST_F(BatteryHistoryTest, AllSamplesWithinSixHours_AreAllSaved) {
    addSamples({5, 3, 1});
    ASSERT_TRUE(save());
    EXPECT_EQ(savedPoints(), (QVariantList{5LL, 3LL, 1LL}));
}

TEST_F(BatteryHistoryTest, AllSamplesOlderThanSixHours_SaveTwoEmptyArrays) {
    addSamples({9, 8, 7});
    ASSERT_TRUE(save());
    EXPECT_TRUE(savedPoints().isEmpty());
    EXPECT_TRUE(savedRoot().contains(QStringLiteral("dataPoints")));
    EXPECT_TRUE(savedRoot().contains(QStringLiteral("dataTimes")));
}

TEST_F(BatteryHistoryTest, SavedAndLoaded_IsTheSame) {
    addSamples({5, 3, 1});
    ASSERT_TRUE(save());
    BatteryHistory loaded(path());
    ASSERT_TRUE(loaded.readData());
    EXPECT_EQ(loaded.dataPoints(), history().dataPoints());
    EXPECT_EQ(loaded.dataTimes(), history().dataTimes());
}

TEST_F(BatteryHistoryTest, FileWithoutOneKey_LeavesThatListUnchanged) {
    put("<dict><key>dataPoints</key><array><integer>42</integer></array></dict>");
    addSamples({1});
    ASSERT_TRUE(history().readData());
    EXPECT_EQ(history().dataPoints(), (QList<int>{1, 42}));
    EXPECT_EQ(history().dataTimes(), (QList<QDateTime>{hoursAgo(1)}));
}

TEST_F(BatteryHistoryTest, ListsOfDifferentLengths_AreSavedWithoutHarm) {
    put("<dict><key>dataTimes</key><array><date>2026-01-05T08:00:00Z</date>"
        "<date>2026-01-05T08:30:00Z</date></array></dict>");
    ASSERT_TRUE(history().readData());
    EXPECT_TRUE(save());
    EXPECT_TRUE(savedPoints().isEmpty());
}

TEST_F(BatteryHistoryTest, MissingFile_StartsEmptyWithoutMessage) {
    EXPECT_FALSE(history().readData());
    EXPECT_TRUE(history().dataPoints().isEmpty());
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(BatteryHistoryTest, MalformedFile_StartsEmptyAndIsKeptAsideAtTheNextSave) {
    laptop().files().put(path(), "<plist><dict>");
    EXPECT_FALSE(history().readData());
    EXPECT_TRUE(logLines().isEmpty());
    addSamples({1});
    ASSERT_TRUE(save());
    EXPECT_EQ(savedPoints(), (QVariantList{1LL}));
    EXPECT_EQ(laptop().files().files().value(path() + QStringLiteral(".corrupt")), "<plist><dict>");
    EXPECT_EQ(logLines().size(), 1);
}

TEST_F(BatteryHistoryTest, ListThatIsNoDictionary_CountsAsUnreadable) {
    put("<array><integer>1</integer></array>");
    EXPECT_FALSE(history().readData());
    EXPECT_TRUE(history().dataPoints().isEmpty());
}

TEST_F(BatteryHistoryTest, UnreadableFile_IsNotOverwritten) {
    laptop().files().put(path(), "data of somebody");
    laptop().files().failReading(path());
    EXPECT_FALSE(history().readData());
    addSamples({1});
    EXPECT_TRUE(save());
    EXPECT_EQ(laptop().files().files().value(path() + QStringLiteral(".corrupt")),
              "data of somebody");
}

TEST_F(BatteryHistoryTest, FolderThatCannotBeMade_SavesNothing) {
    laptop().files().setReadOnly(true);
    addSamples({1});
    EXPECT_FALSE(save());
    EXPECT_TRUE(laptop().files().files().isEmpty());
}

TEST_F(BatteryHistoryTest, DateBeforeAllSamples_IsFoundAtZeroAndAfterAllAtTheCount) {
    EXPECT_EQ(history().findDate(hoursAgo(1)), 0U);
    addSamples({5, 3, 1});
    EXPECT_EQ(history().findDate(hoursAgo(6)), 0U);
    EXPECT_EQ(history().findDate(hoursAgo(0)), 3U);
    EXPECT_EQ(history().findDate(hoursAgo(3)), 1U);
    EXPECT_EQ(history().findDate(hoursAgo(2)), 2U);
}

TEST_F(BatteryHistoryTest, PercentAtTime_IsTheFirstSampleAtOrAfterTheDateElseTheLast) {
    addSamples({5, 3, 1});
    EXPECT_EQ(history().percentAtTime(hoursAgo(6)), 5);
    EXPECT_EQ(history().percentAtTime(hoursAgo(4)), 3);
    EXPECT_EQ(history().percentAtTime(hoursAgo(0)), 1);
}

TEST_F(BatteryHistoryTest, Battery_LoadsTheHistoryAtStartAndSavesItWhenAsked) {
    addSamples({2});
    ASSERT_TRUE(save());
    Battery& battery = Battery::battery();
    EXPECT_EQ(battery.dataPoints(), (QList<int>{2}));
    laptop().powerSources().announce();
    ASSERT_TRUE(battery.saveData());
    EXPECT_EQ(savedPoints(), (QVariantList{2LL, 80LL}));
    EXPECT_EQ(battery.findDate(hoursAgo(0)), 1U);
    EXPECT_EQ(battery.percentAtTime(hoursAgo(0)), 80);
}

namespace {

class BatteryLogTest : public SimulatedLaptopTest {
  protected:
    [[nodiscard]] QString path() {
        return laptop().files().applicationSupportFolder() + QStringLiteral("/Quorvane/Log.txt");
    }

    void makeFolder() {
        laptop().files().createFolder(laptop().files().applicationSupportFolder() +
                                      QStringLiteral("/Quorvane"));
    }

    [[nodiscard]] QByteArray bytes() { return laptop().files().files().value(path()); }

    [[nodiscard]] QString text() {
        QStringDecoder decoder(QStringConverter::Utf16);
        return decoder.decode(bytes());
    }
};

} // namespace

TEST_F(BatteryLogTest, FirstEntry_WritesHeaderAndEntryAndOneConsoleMessage) {
    makeFolder();
    BatteryLog(path()).write(QStringLiteral("Power saving is enabled"));
    EXPECT_EQ(text(), QStringLiteral("Quorvane log file:\nPower saving is enabled"));
    ASSERT_EQ(logLines().size(), 1);
    EXPECT_TRUE(logLines().first().startsWith(QStringLiteral("Error while loading from file (")));
    EXPECT_TRUE(logLines().first().endsWith(QStringLiteral(") ")));
}

TEST_F(BatteryLogTest, FurtherEntries_AreAppendedWithoutMessage) {
    makeFolder();
    BatteryLog log(path());
    log.write(QStringLiteral("Power saving is enabled"));
    log.write(QStringLiteral("Power saving is disabled"));
    EXPECT_EQ(text(), QStringLiteral(
                          "Quorvane log file:\nPower saving is enabled\nPower saving is disabled"));
    EXPECT_EQ(logLines().size(), 1);
}

TEST_F(BatteryLogTest, File_IsUtf16WithByteOrderMark) {
    makeFolder();
    BatteryLog(path()).write(QStringLiteral("Power saving is enabled"));
    const QByteArray mark = bytes().left(2);
    EXPECT_TRUE(mark == QByteArray("\xff\xfe") || mark == QByteArray("\xfe\xff"));
    EXPECT_EQ(bytes().size() % 2, 0);
}

TEST_F(BatteryLogTest, MissingFolder_LosesTheEntryWithoutFurtherMessage) {
    BatteryLog(path()).write(QStringLiteral("Power saving is enabled"));
    EXPECT_TRUE(laptop().files().files().isEmpty());
    EXPECT_EQ(logLines().size(), 1);
}

TEST_F(BatteryLogTest, LogThatIsNoUtf16_IsKeptAsideAndBegunAnew) {
    laptop().files().put(path(), "odd");
    BatteryLog(path()).write(QStringLiteral("Power saving is enabled"));
    EXPECT_EQ(text(), QStringLiteral("Quorvane log file:\nPower saving is enabled"));
    EXPECT_EQ(laptop().files().files().value(path() + QStringLiteral(".corrupt")), "odd");
}

TEST_F(BatteryLogTest, EmptyLog_StartsWithTheHeader) {
    laptop().files().put(path(), {});
    BatteryLog(path()).write(QStringLiteral("Power saving is enabled"));
    EXPECT_EQ(text(), QStringLiteral("Quorvane log file:\nPower saving is enabled"));
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(BatteryLogTest, BigEndianLog_IsReadAndContinued) {
    QStringEncoder encoder(QStringConverter::Utf16BE, QStringConverter::Flag::WriteBom);
    laptop().files().put(path(), encoder.encode(QStringLiteral("Quorvane log file:\nold")));
    BatteryLog(path()).write(QStringLiteral("new"));
    EXPECT_EQ(text(), QStringLiteral("Quorvane log file:\nold\nnew"));
}

} // namespace quorvane::test
