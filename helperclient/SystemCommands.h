#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

class AuthorizationRef;

/// Runs system tools as the administrator, under an authorization that the caller holds, and with
/// them loads and unloads kernel extensions. Tools are only started: nothing waits for them or
/// learns what became of them. One that cannot be started is logged as "Error: " and the platform's
/// status. Any thread.
class SystemCommands {
  public:
    /// Where a tool's communications stream would go.
    using Pipe = void*;

    /// `path` is the tool's. Returns whether it was started.
    static bool runTaskAsAdmin(const QString& path, const AuthorizationRef& authRef,
                               const QStringList& args);

    /// The same: nothing is ever put into `pipe`, which may be null.
    static bool runTaskAsAdmin(const QString& path, const AuthorizationRef& authRef,
                               const QStringList& args, Pipe* pipe);

    /// Gives the bundle at `path` to root and loads it; the second also where the first could not
    /// be started, and without waiting for it. Returns whether both were started.
    static bool loadModuleWithPath(const QString& path, const AuthorizationRef& authRef);

    /// Unloads the bundle at `path`. Always true.
    static bool unloadModuleWithPath(const QString& path, const AuthorizationRef& authRef);
};

} // namespace quorvane
