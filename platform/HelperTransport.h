#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace quorvane {

class HelperToolProtocol;

/// One connection to the privileged helper. Opened, used and dropped on the main thread; replies
/// and handlers arrive on a thread of the connection's own, never on the main thread. They must not
/// wait for the main thread, which waits for them when it drops the connection.
class HelperConnection {
  public:
    using ErrorHandler = std::function<void(const QString& error)>;

    virtual ~HelperConnection() = default;

    /// Called once, when the connection has become useless (the helper left, or `invalidate`).
    virtual void setInvalidationHandler(std::function<void()> handler) = 0;

    virtual void resume() = 0;
    virtual void invalidate() = 0;

    /// The helper's commands. `errorHandler` runs once for a command that cannot be delivered; its
    /// reply then never comes. The proxy stays usable as long as the connection lives.
    virtual std::shared_ptr<HelperToolProtocol> remoteObjectProxy(ErrorHandler errorHandler) = 0;
};

/// Opens connections to privileged services.
class HelperTransport {
  public:
    virtual ~HelperTransport() = default;

    /// `serviceName` is the service's name on the machine. Never fails: a service that cannot be
    /// reached shows when a command is sent.
    [[nodiscard]] virtual std::unique_ptr<HelperConnection>
    connectTo(const QString& serviceName) = 0;
};

} // namespace quorvane
