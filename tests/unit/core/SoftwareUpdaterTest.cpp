#include "core/SoftwareUpdater.h"

#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <map>

namespace quorvane::test {

namespace {

using Kind = UpdateStatus::Kind;
using Download = UpdateService::Download;

class SoftwareUpdaterTest : public SimulatedLaptopTest {
  protected:
    void check(const UpdateStatus& status) {
        laptop().updateService().status = status;
        SoftwareUpdater::sharedUpdater().checkForUpdates();
        SimulatedClock::runMainQueue();
    }
};

} // namespace

TEST_F(SoftwareUpdaterTest, Start_LooksAtOnceAndEachHourAndFetches) {
    start();
    const SoftwareUpdater& updater = SoftwareUpdater::sharedUpdater();
    EXPECT_TRUE(updater.automaticallyChecksForUpdates());
    EXPECT_TRUE(updater.automaticallyDownloadsUpdates());
    EXPECT_EQ(updater.updateCheckInterval(), Seconds(3600));
    EXPECT_EQ(laptop().updateService().looks, std::vector{Download::Yes});
    laptop().clock().advance(Seconds(2 * 3600 + 1));
    EXPECT_EQ(laptop().updateService().looks.size(), 3U);
    EXPECT_TRUE(notificationTitles().isEmpty()) << "nobody has asked";
}

TEST_F(SoftwareUpdaterTest, UserAsks_IsToldWithoutFetching) {
    const std::map<Kind, QString> titles{
        {Kind::UpToDate, QStringLiteral("Quorvane is up to date")},
        {Kind::Available, QStringLiteral("Quorvane 2.5 is available")},
        {Kind::Downloaded, QStringLiteral("Quorvane 2.5 is available")},
        {Kind::NoService, QStringLiteral("Updates come with your system")},
        {Kind::NotPackaged, QStringLiteral("This copy of Quorvane is not updated by your system")},
        {Kind::Metered, QStringLiteral("Not checked for updates")},
        {Kind::Failed, QStringLiteral("Checking for updates failed")},
    };
    for (const auto& [kind, title] : titles) {
        check({kind, QStringLiteral("2.5")});
        EXPECT_EQ(notificationTitles().last(), title);
        EXPECT_EQ(laptop().updateService().looks.back(), Download::No);
    }
}

TEST_F(SoftwareUpdaterTest, Failure_IsToldInTheServicesWords) {
    check({Kind::Failed, QStringLiteral("no network")});
    EXPECT_EQ(laptop().userNotifications().history().last().informativeText,
              QStringLiteral("no network"));
}

TEST_F(SoftwareUpdaterTest, SwitchedOff_HoldsNoTimer) {
    SoftwareUpdater& updater = SoftwareUpdater::sharedUpdater();
    const std::size_t timers = laptop().clock().timerCount();
    updater.setAutomaticallyChecksForUpdates(true);
    EXPECT_EQ(laptop().clock().timerCount(), timers + 1);
    updater.setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(laptop().clock().timerCount(), timers);
}

} // namespace quorvane::test
