#pragma once

#include "platform/Authorization.h"
#include "platform/HelperToolProtocol.h"
#include "platform/HelperTransport.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

/// The application's side of the privileged helper: installs, upgrades and removes it, owns the one
/// connection to it and runs commands over that. Everything here is called on the main thread,
/// which is checked where the connection is concerned; replies and error handlers arrive on the
/// connection's own thread.
class HelperTool : public QObject {
    Q_OBJECT

  public:
    using CommandBlock = std::function<void(const std::optional<QString>& error)>;
    using ProxyBlock = std::function<void(HelperToolProtocol& proxy)>;

    HelperTool();
    ~HelperTool() override;

    /// The shared instance.
    static HelperTool& helperTool();

    /// The helper's label, also the name of its service.
    static QString label();

    /// Creates the authorization reference and registers the rights. A failure ends the process.
    void setupAuthRef();

    [[nodiscard]] bool isHelperToolInstalled() const;

    /// Both only begin it; what came of it goes to the log later. A failed installation is silent.
    void installAction();
    void removeAction();

    /// Installs the helper if it is missing, else replaces it if it is older than the bundle's.
    void installLatestVersion();

    /// Begins to remove the helper. Always true.
    bool uninstall();

    /// The running helper's version; asked for once, blocking for up to 5 seconds. Nothing when it
    /// does not answer or answers no decimal number; it is then asked again next time.
    [[nodiscard]] std::optional<double> versionNumber();

    /// The version of the helper in the application bundle, or nothing.
    [[nodiscard]] std::optional<double> getBundleHelperVersion() const;

    void checkHelperVersionAndUpdate();
    void connectToHelperTool();

    /// Runs the block at once, with the connection open and no error: an unreachable helper shows
    /// only when a command is sent.
    void connectAndExecuteCommandBlock(const CommandBlock& block);

    /// Runs the block with the helper's commands.
    void safeExecuteBlock(const ProxyBlock& block);

    /// The external form of the authorization reference; no command sends it.
    [[nodiscard]] QByteArray authorization() const { return authorization_; }

    [[nodiscard]] bool isConnected() const { return helperToolConnection_ != nullptr; }

  private:
    void connectionInvalidated(const HelperConnection* connection);

    std::optional<double> installedVersion_;
    std::unique_ptr<AuthorizationRef> authRef_;
    QByteArray authorization_;
    std::shared_ptr<HelperConnection> helperToolConnection_;
};

} // namespace quorvane
