#pragma once

#include "platform/HelperTransport.h"
#include "platform/linux/helperclient/HelperCall.h"

#include <QDBusConnection>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

class CallsUnderWay;
class HelperSession;

/// The helper's commands over the system bus, which starts the helper when one comes and it does
/// not run. Main thread only; replies and handlers run on a thread of each connection's own.
///
/// A connection that is dropped while it is valid takes its handlers along: none runs any more. One
/// that has become invalid before leaves behind what it was told to send, and that is still
/// answered.
class LinuxHelperTransport final : public QObject, public HelperTransport {
    Q_OBJECT

  public:
    explicit LinuxHelperTransport(const QDBusConnection& systemBus);
    ~LinuxHelperTransport() override;
    LinuxHelperTransport(const LinuxHelperTransport&) = delete;
    LinuxHelperTransport& operator=(const LinuxHelperTransport&) = delete;

    [[nodiscard]] std::unique_ptr<HelperConnection> connectTo(const QString& serviceName) override;

    /// The helper is being installed: commands wait from now on. They do not count as under way,
    /// because nobody knows when an administrator answers.
    void holdCommands();

    /// Sends what has waited, in its order; or has it fail with the error.
    void releaseCommands(const std::optional<QString>& error);

    /// Runs the block on the main thread once no command is under way; at once if none is.
    void whenIdle(std::function<void()> block);

    /// Blocks until no command is under way, or the limit is reached. Returns whether none is. Does
    /// not run the event loop.
    bool waitForPending(std::chrono::milliseconds limit);

    /// Ends all connections. No handler runs afterwards, and nothing is sent any more.
    void close();

  private:
    class Connection;

    struct WaitingCall {
        std::shared_ptr<HelperSession> session;
        HelperCall call;
    };

    void send(const std::shared_ptr<HelperSession>& session, HelperCall call);
    void dropped(const std::shared_ptr<HelperSession>& session);
    [[nodiscard]] bool hasWork(const std::shared_ptr<HelperSession>& session) const;
    void idle();

    QDBusConnection bus_;
    std::shared_ptr<CallsUnderWay> calls_;
    std::vector<std::weak_ptr<HelperSession>> sessions_;
    std::vector<std::shared_ptr<HelperSession>>
        leftBehind_; ///< still answering, without connection
    std::vector<WaitingCall> waiting_;
    std::vector<std::function<void()>> idleBlocks_;
    bool isHeld_ = false;
    bool isClosed_ = false;
};

} // namespace quorvane
