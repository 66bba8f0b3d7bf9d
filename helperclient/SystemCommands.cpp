#include "helperclient/SystemCommands.h"

#include "platform/Authorization.h"
#include "platform/Log.h"
#include "platform/Platform.h"

namespace quorvane {

bool SystemCommands::runTaskAsAdmin(const QString& path, const AuthorizationRef& authRef,
                                    const QStringList& args) {
    return runTaskAsAdmin(path, authRef, args, nullptr);
}

bool SystemCommands::runTaskAsAdmin(const QString& path, const AuthorizationRef& authRef,
                                    const QStringList& args, Pipe* /*pipe*/) {
    const int status = platform().authorization().executeWithPrivileges(authRef, path, args);
    if (status != 0) {
        log(QStringLiteral("Error: %1").arg(status));
    }
    return status == 0;
}

bool SystemCommands::loadModuleWithPath(const QString& path, const AuthorizationRef& authRef) {
    const bool isOwned = runTaskAsAdmin(QStringLiteral("/usr/sbin/chown"), authRef,
                                        {QStringLiteral("-R"), QStringLiteral("root:wheel"), path});
    const bool isLoaded =
        runTaskAsAdmin(QStringLiteral("/usr/bin/kextutil"), authRef, {QStringLiteral("-v"), path});
    return isOwned && isLoaded;
}

bool SystemCommands::unloadModuleWithPath(const QString& path, const AuthorizationRef& authRef) {
    runTaskAsAdmin(QStringLiteral("/sbin/kextunload"), authRef, {QStringLiteral("-v"), path});
    return true;
}

} // namespace quorvane
