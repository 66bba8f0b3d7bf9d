#include "app/SettingsHelp.h"
#include "apps/quorvane/Resident.h"
#include "core/Translation.h"
#include "platform/linux/basics/LinuxBundle.h"
#include "platform/linux/common/TerminationSignals.h"
#include "platform/linux/processes/RestoreGuard.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>

#include <cstdio>
#include <optional>

namespace {

constexpr const char* description =
    "Lengthens the battery life of this laptop: watches the battery and, in Low Power Mode,\n"
    "dims the screen and slows the processor down; puts everything back when the mode ends.\n"
    "Shows an icon with a menu in the panel and runs until you quit it.\n\n"
    "Settings: com.TarnwickStudios.quorvane.conf in ~/.config (or $XDG_CONFIG_HOME).\n"
    "In brackets: what holds without a line.\n";

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

    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(description) + quorvane::settingsHelp());
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

    if (parser.isSet(restore)) {
        return quorvane::Resident::restore(&QDBusConnection::systemBus);
    }
    const quorvane::Translation translation(quorvane::LinuxBundle::contentsFolderOfThisProgram() +
                                            QStringLiteral("/Resources/Translations"));
    quorvane::Resident resident(sessionBus(), QDBusConnection::systemBus());
    return parser.isSet(quit) ? resident.quitRunningCopy() : resident.run();
}
