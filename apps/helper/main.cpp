#include "apps/helper/Helper.h"
#include "apps/helper/Installation.h"
#include "apps/helper/ServiceManagement.h"
#include "platform/linux/common/LinuxLog.h"
#include "platform/linux/common/TerminationSignals.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

constexpr mode_t forOwnerOnly = 0077;
constexpr mode_t forAllToRead = 0022;

int failed(const QString& reason) {
    std::fprintf(stderr, "%s: %s\n", helpernames::label.data(), qPrintable(reason));
    return EXIT_FAILURE;
}

int finished(const std::optional<QString>& error) {
    return error ? failed(*error) : EXIT_SUCCESS;
}

Helper::Options options() {
    Helper::Options options;
    options.paths.extensions = QCoreApplication::applicationDirPath();
    return options;
}

int serve() {
    LinuxLog log(helpernames::label.data());
    const Helper::Options chosen = options();
    if (const auto error = prepareRuntimeFolder(chosen.paths.runtimeFolder)) {
        return failed(QStringLiteral("%1: %2").arg(chosen.paths.runtimeFolder, *error));
    }
    const TerminationSignals signals;
    Helper helper(QDBusConnection::systemBus(), chosen, log);
    QObject::connect(&signals, &TerminationSignals::received, [] { QCoreApplication::quit(); });
    QObject::connect(&helper, &Helper::left, [] { QCoreApplication::quit(); });
    helper.putBackLeftovers();
    if (!helper.serve()) {
        return EXIT_FAILURE;
    }
    QCoreApplication::exec();
    helper.putEverythingBack();
    return EXIT_SUCCESS;
}

int putBack() {
    LinuxLog log(helpernames::label.data());
    Helper helper(QDBusConnection(QString()), options(), log);
    helper.putBackLeftovers();
    return EXIT_SUCCESS;
}

// The service first stops being started, then ends, then goes.
std::optional<QString> remove(const Installation& installation, const ServiceManagement& services) {
    if (installation.isPackaged() && !installation.isInstalled()) {
        return QStringLiteral("the distribution's package has installed the helper; remove that");
    }
    std::optional<QString> error = installation.removeService();
    services.reload();
    error = error ? error : services.stop();
    if (!error) {
        error = installation.removeFiles();
        services.reload();
    }
    return error;
}

int install(bool isReplacing, bool isRemoving) {
    ::umask(forAllToRead);
    const Installation installation(QString(), QStringLiteral("/proc/self/exe"));
    const ServiceManagement services(QDBusConnection::systemBus());
    const bool isRefused = !isRemoving && installation.isPackaged();
    if (!isRefused && (isReplacing || isRemoving)) {
        const auto error = remove(installation, services);
        if (error || isRemoving) {
            return finished(error);
        }
    }
    const auto error = installation.install();
    services.reload();
    return finished(error);
}

QString description() {
    return QStringLiteral(
        "The part of Quorvane that runs as root. Started by the system bus when it is needed, it\n"
        "switches the processor's turbo off and the machine's low power mode on, tells how much "
        "of\n"
        "the processor each program uses, and ends after an idle minute. polkit decides who may\n"
        "ask. What it has switched is put back when whoever has asked for it ends.");
}

} // namespace

} // namespace quorvane

int main(int argc, char** argv) {
    using namespace quorvane;
    // Nothing that the one who starts it has in his environment counts for root.
    ::clearenv();
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::umask(forOwnerOnly);
    TerminationSignals::hold();
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(helpernames::label);
    QCoreApplication::setApplicationVersion(HelperCommands::getVersion());

    QCommandLineParser parser;
    parser.setApplicationDescription(description());
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption install(helpernames::installOption.mid(2),
                                     QStringLiteral("Install this helper on the machine."));
    const QCommandLineOption remove(helpernames::removeOption.mid(2),
                                    QStringLiteral("End the helper and take it from the machine."));
    const QCommandLineOption replace(helpernames::replaceOption.mid(2),
                                     QStringLiteral("Put this helper into the place of another."));
    const QCommandLineOption putBackOption(
        QStringLiteral("put-back"),
        QStringLiteral("Put back what a helper that has crashed left switched, and end."));
    parser.addOptions({install, remove, replace, putBackOption});
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        failed(QStringLiteral("unexpected argument; see --help"));
        return 2;
    }
    if (::geteuid() != 0) {
        return failed(QStringLiteral("this has to be run by root"));
    }
    if (parser.isSet(putBackOption)) {
        return putBack();
    }
    const bool changesFiles =
        parser.isSet(install) || parser.isSet(remove) || parser.isSet(replace);
    return changesFiles ? quorvane::install(parser.isSet(replace), parser.isSet(remove)) : serve();
}
