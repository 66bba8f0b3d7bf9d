// Dims every display and then waits for its end: a run of the program that a test can kill.
//   dimming_process BUS-ADDRESS SYSFS JOURNAL BRIGHTNESS

#include "platform/linux/common/LinuxLog.h"
#include "platform/linux/displays/LinuxDisplays.h"

#include <QCoreApplication>
#include <QDBusConnection>

#include <cstdio>

using namespace quorvane;

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QDBusConnection bus =
        QDBusConnection::connectToBus(arguments.at(1), QStringLiteral("dimming"));
    LinuxLog log;
    PuttingBackJournal journal(arguments.at(3), log);
    LinuxDisplays displays(bus, journal, log, arguments.at(2));
    constexpr std::size_t capacity = 16;
    for (const DisplayId display : displays.activeDisplays(capacity).displays) {
        displays.setBrightness(display, arguments.at(4).toFloat());
    }
    displays.waitForWrites(std::chrono::seconds(10));
    std::puts("dimmed");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
