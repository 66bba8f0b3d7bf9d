#include "platform/linux/helperclient/LinuxOperatingSystem.h"

#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace quorvane::test {
namespace {

class LinuxOperatingSystemTest : public testing::Test {
  protected:
    void TearDown() override { QDBusConnection::disconnectFromBus(connectionName); }

    void put(const char* path) const {
        const QFileInfo file(root.path() + QLatin1String(path));
        ASSERT_TRUE(QDir().mkpath(file.path()));
        ASSERT_TRUE(QFile(file.filePath()).open(QIODevice::WriteOnly));
    }

    [[nodiscard]] bool isVersion13OrLater() const {
        return LinuxOperatingSystem(bus.connection(connectionName), root.path())
            .isVersion13OrLater();
    }

    const QString connectionName = QStringLiteral("operating-system");
    PrivateBus bus{PrivateBus::Type::System};
    QTemporaryDir root;
};

TEST_F(LinuxOperatingSystemTest, MachineWithoutSwitchOrProfiles_IsBefore13) {
    EXPECT_FALSE(isVersion13OrLater());
    put("/sys/devices/system/cpu/cpufreq/policy0/scaling_driver");
    EXPECT_FALSE(isVersion13OrLater());
}

TEST_F(LinuxOperatingSystemTest, IntelsSwitch_Is13) {
    put("/sys/devices/system/cpu/intel_pstate/no_turbo");
    EXPECT_TRUE(isVersion13OrLater());
}

TEST_F(LinuxOperatingSystemTest, SwitchForAllProcessors_Is13) {
    put("/sys/devices/system/cpu/cpufreq/boost");
    EXPECT_TRUE(isVersion13OrLater());
}

TEST_F(LinuxOperatingSystemTest, SwitchOfOneGroupOfProcessors_Is13) {
    put("/sys/devices/system/cpu/cpufreq/policy0/scaling_driver");
    put("/sys/devices/system/cpu/cpufreq/policy12/boost");
    EXPECT_TRUE(isVersion13OrLater());
}

TEST_F(LinuxOperatingSystemTest, PowerProfilesThatRun_Are13UnderEachName) {
    for (const char* const name :
         {"org.freedesktop.UPower.PowerProfiles", "net.hadess.PowerProfiles"}) {
        EXPECT_FALSE(isVersion13OrLater()) << name;
        const FakeService profiles(bus, QLatin1String(name), [](const QDBusMessage& call) {
            ADD_FAILURE() << "only the bus is asked";
            return call.createReply();
        });
        EXPECT_TRUE(isVersion13OrLater()) << name;
    }
}

TEST_F(LinuxOperatingSystemTest, PowerProfilesThatTheBusCanStart_Are13AndAreNotStarted) {
    QFile service(bus.serviceFolder() + QStringLiteral("/profiles.service"));
    ASSERT_TRUE(service.open(QIODevice::WriteOnly));
    service.write("[D-BUS Service]\nName=net.hadess.PowerProfiles\nExec=/usr/bin/touch " +
                  QFile::encodeName(root.filePath(QStringLiteral("started"))) + "\n");
    service.close();
    EXPECT_TRUE(isVersion13OrLater());
    EXPECT_FALSE(QFile::exists(root.filePath(QStringLiteral("started"))));
}

TEST_F(LinuxOperatingSystemTest, WithoutABus_TheSwitchAloneDecides) {
    const LinuxOperatingSystem system(QDBusConnection(QStringLiteral("no such bus")), root.path());
    EXPECT_FALSE(system.isVersion13OrLater());
    put("/sys/devices/system/cpu/cpufreq/boost");
    EXPECT_TRUE(system.isVersion13OrLater());
}

TEST_F(LinuxOperatingSystemTest, Machine_IsTheKernelsWord) {
    EXPECT_EQ(LinuxOperatingSystem(bus.connection(connectionName)).machine(),
              QSysInfo::currentCpuArchitecture());
}

} // namespace
} // namespace quorvane::test
