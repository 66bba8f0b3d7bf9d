#include "platform/linux/applications/UnitApplications.h"

#include "tests/support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <unistd.h>

using testing::IsEmpty;
using testing::SizeIs;

namespace quorvane::test {
namespace {

class UnitApplicationsTest : public testing::Test {
  protected:
    void write(const char* unit, const QByteArray& processes) const {
        const QString group = folder_.filePath(QLatin1String(unit));
        QDir().mkpath(group);
        QFile file(group + QStringLiteral("/cgroup.procs"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(processes);
    }

    [[nodiscard]] std::vector<RunningApplication>
    look(const std::vector<RunningApplication>& known = {}) {
        return units_.without(known, [this](std::int32_t pid) {
            ++questions_;
            return ApplicationIdentity::Found{QStringLiteral("app.%1").arg(pid),
                                              QStringLiteral("App")};
        });
    }

    QTemporaryDir folder_;
    UnitApplications units_{folder_.path()};
    int questions_ = 0;
    const QByteArray own_ = QByteArray::number(::getpid());
    const QByteArray parent_ = QByteArray::number(::getppid());
};

TEST_F(UnitApplicationsTest, NoServiceManager_NoApplications) {
    UnitApplications none{QString()};
    EXPECT_THAT(none.without({}, [](std::int32_t) { return std::nullopt; }), IsEmpty());
}

TEST_F(UnitApplicationsTest, Unit_IsAnAccessoryOfTheProcessThatStartedTheOthers) {
    write("app-sample-1.scope", own_ + "\n" + parent_ + "\n");
    const auto applications = look();
    ASSERT_THAT(applications, SizeIs(1));
    EXPECT_EQ(applications[0].processIdentifier, ::getppid());
    EXPECT_EQ(applications[0].bundleIdentifier, QStringLiteral("app.") + QLatin1String(parent_));
    EXPECT_EQ(applications[0].activationPolicy, ActivationPolicy::Accessory);
}

TEST_F(UnitApplicationsTest, UnitOfAnApplicationWithWindows_IsLeftOut) {
    write("app-sample-1.scope", own_ + "\n" + parent_ + "\n");
    RunningApplication known;
    known.processIdentifier = ::getpid();
    EXPECT_THAT(look({known}), IsEmpty());
}

// The kernel says of what nobody has started that 0 is its parent.
TEST_F(UnitApplicationsTest, ApplicationWithoutAProcess_HasStartedNobody) {
    write("app-sample-1.scope", "1\n");
    EXPECT_THAT(look({RunningApplication()}), SizeIs(1));
}

TEST_F(UnitApplicationsTest, UnitOfWhatAnApplicationWithWindowsHasStarted_IsLeftOut) {
    write("app-sample-1.scope", own_ + "\n");
    RunningApplication known;
    known.processIdentifier = ::getppid();
    EXPECT_THAT(look({known}), IsEmpty());
}

TEST_F(UnitApplicationsTest, UnitOfWhatAnotherUnitsProcessHasStarted_IsLeftOut) {
    write("app-sample-1.scope", own_ + "\n");
    write("app-sample-2.scope", parent_ + "\n");
    const auto applications = look();
    ASSERT_THAT(applications, SizeIs(1));
    EXPECT_EQ(applications[0].processIdentifier, ::getppid());
}

TEST_F(UnitApplicationsTest, ServiceInASliceOfItsTemplate_IsAnApplication) {
    write("app-app\\x2dsample.slice/app-sample@1.service", own_ + "\n");
    EXPECT_THAT(look(), SizeIs(1));
}

TEST_F(UnitApplicationsTest, OtherAndEmptyUnits_AreNoApplications) {
    write("app-empty-1.scope", "");
    write("app-broken-1.scope", "nonsense\n-5\n0\n");
    write("dbus.service", own_ + "\n");
    write("snap.sample.sample-1c2d3e4f-0000-1111-2222-333344445555.scope", own_ + "\n");
    write("app-sample.slice", own_ + "\n");
    EXPECT_THAT(look(), IsEmpty());
}

TEST_F(UnitApplicationsTest, SameUnit_IsIdentifiedOnce) {
    write("app-sample-1.scope", own_ + "\n");
    EXPECT_THAT(look(), SizeIs(1));
    EXPECT_THAT(look(), SizeIs(1));
    EXPECT_EQ(questions_, 1);
    write("app-sample-1.scope", parent_ + "\n");
    EXPECT_EQ(look().at(0).processIdentifier, ::getppid());
    EXPECT_EQ(questions_, 2);
}

} // namespace
} // namespace quorvane::test
