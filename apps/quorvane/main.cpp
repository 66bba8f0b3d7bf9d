#include "apps/quorvane/Resident.h"
#include "platform/linux/LinuxBundle.h"
#include "platform/linux/RestoreGuard.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/Translation.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>

#include <cstdio>
#include <optional>

namespace {

// Where no session bus is announced, the library would start one of its own, which nobody else in
// the session talks to.
QDBusConnection sessionBus() {
    const bool isAnnounced =
        qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
        (qEnvironmentVariableIsSet("XDG_RUNTIME_DIR") &&
         QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus")));
    return isAnnounced ? QDBusConnection::sessionBus() : QDBusConnection(QString());
}

} // namespace

int main(int argc, char** argv) {
    if (const std::optional<int> status = quorvane::RestoreGuard::standIfAsked(argc, argv)) {
        return *status;
    }
    quorvane::TerminationSignals::hold();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quorvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUORVANE_VERSION));

    const quorvane::Translation translation(quorvane::LinuxBundle::contentsFolderOfThisProgram() +
                                            QStringLiteral("/Resources/Translations"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Lengthens the battery life of this laptop: watches the battery and, in Low Power Mode,\n"
        "dims the screen and slows the processor down; puts everything back when the mode ends.\n"
        "Shows an icon with a menu in the panel and runs until you quit it.\n\n"
        "Settings: com.TarnwickStudios.quorvane.conf in ~/.config (or $XDG_CONFIG_HOME).\n"
        "  QuorvaneActive=true|false            switches Low Power Mode on and off\n"
        "  QuorvaneAutoStartSetting=0|1|2       at the threshold: start at once, ask, do nothing\n"
        "  BatteryThreshold=70                  percent\n"
        "  MenuBarShowBatteryIcon=true|false    the icon is a gauge of the battery\n"
        "  MenuBarDisplayMode=0|1|2             beside it: nothing, percentage, time left\n"
        "  TurboModuleActivated=true|false      slow the processor down in Low Power Mode\n"
        "  BrightnessModuleActivated=true|false dim the screen in Low Power Mode\n"
        "  BrightnessModuleAmount=50            0 (darkest) to 100 (brightest)\n"
        "  BrowserModuleActivated=true|false    pause browsers in the background\n"
        "  AppNapModuleActivated=true|false     hide applications that are not used\n"
        "  AppNapModuleTimeInterval=5           minutes until they are hidden"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption quit(
        QStringLiteral("quit"),
        QStringLiteral("Ask the running copy to quit: the mode ends, everything is put back."));
    const QCommandLineOption restore(
        QStringLiteral("restore"),
        QStringLiteral("Put back what a copy that has crashed left changed, and end."));
    parser.addOptions({quit, restore});
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        std::fprintf(stderr, "quorvane: unexpected argument \"%s\"; see quorvane --help.\n",
                     qPrintable(parser.positionalArguments().first()));
        return 2;
    }

    quorvane::Resident resident(sessionBus(), QDBusConnection::systemBus());
    if (parser.isSet(restore)) {
        return resident.restore();
    }
    return parser.isSet(quit) ? resident.quitRunningCopy() : resident.run();
}
