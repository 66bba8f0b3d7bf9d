#include "platform/linux/helperclient/LinuxHelperTransport.h"

#include "platform/MainQueue.h"
#include "platform/linux/helperclient/CallsUnderWay.h"
#include "platform/linux/helperclient/HelperProxy.h"
#include "platform/linux/helperclient/HelperSession.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace quorvane {

class LinuxHelperTransport::Connection final : public HelperConnection {
  public:
    Connection(LinuxHelperTransport& transport, std::shared_ptr<HelperSession> session,
               QString service)
        : transport_(&transport), session_(std::move(session)), service_(std::move(service)) {}

    ~Connection() override {
        session_->setInvalidationHandler({});
        if (transport_) {
            transport_->dropped(session_);
        }
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void setInvalidationHandler(std::function<void()> handler) override {
        session_->setInvalidationHandler(std::move(handler));
    }

    /// There is nothing to open: the bus is, and the helper comes with the first command.
    void resume() override {}

    void invalidate() override { session_->invalidate(); }

    std::shared_ptr<HelperToolProtocol> remoteObjectProxy(ErrorHandler errorHandler) override {
        const auto send = [transport = transport_,
                           session = std::weak_ptr(session_)](HelperCall call) {
            if (const auto alive = session.lock(); alive && transport) {
                transport->send(alive, std::move(call));
            }
        };
        return std::make_shared<HelperProxy>(service_, send, std::move(errorHandler));
    }

  private:
    QPointer<LinuxHelperTransport> transport_;
    std::shared_ptr<HelperSession> session_;
    QString service_;
};

LinuxHelperTransport::LinuxHelperTransport(const QDBusConnection& systemBus)
    : bus_(systemBus),
      calls_(std::make_shared<CallsUnderWay>([this] { queueOnMain(this, [this] { idle(); }); })) {}

LinuxHelperTransport::~LinuxHelperTransport() {
    close();
}

std::unique_ptr<HelperConnection> LinuxHelperTransport::connectTo(const QString& serviceName) {
    auto session = std::make_shared<HelperSession>(bus_, serviceName, calls_);
    std::erase_if(sessions_, [](const auto& each) { return each.expired(); });
    sessions_.push_back(session);
    return std::make_unique<Connection>(*this, std::move(session), serviceName);
}

void LinuxHelperTransport::send(const std::shared_ptr<HelperSession>& session, HelperCall call) {
    if (isClosed_) {
        return;
    }
    if (isHeld_) {
        waiting_.push_back({session, std::move(call)});
    } else {
        session->send(std::move(call));
    }
}

void LinuxHelperTransport::holdCommands() {
    isHeld_ = true;
}

void LinuxHelperTransport::releaseCommands(const std::optional<QString>& error) {
    isHeld_ = false;
    for (WaitingCall& each : std::exchange(waiting_, {})) {
        if (error) {
            each.session->fail(std::move(each.call), *error);
        } else {
            each.session->send(std::move(each.call));
        }
    }
}

void LinuxHelperTransport::whenIdle(std::function<void()> block) {
    if (calls_->isIdle()) {
        block();
    } else {
        idleBlocks_.push_back(std::move(block));
    }
}

bool LinuxHelperTransport::waitForPending(std::chrono::milliseconds limit) {
    return calls_->waitUntilIdle(limit);
}

bool LinuxHelperTransport::hasWork(const std::shared_ptr<HelperSession>& session) const {
    return session->isWorking() ||
           std::any_of(waiting_.begin(), waiting_.end(),
                       [&session](const WaitingCall& each) { return each.session == session; });
}

void LinuxHelperTransport::dropped(const std::shared_ptr<HelperSession>& session) {
    if (session->isInvalid() && hasWork(session)) {
        leftBehind_.push_back(session);
        return;
    }
    std::erase_if(waiting_,
                  [&session](const WaitingCall& each) { return each.session == session; });
    session->end();
}

void LinuxHelperTransport::idle() {
    if (!calls_->isIdle()) {
        return;
    }
    std::erase_if(leftBehind_, [this](const auto& session) { return !hasWork(session); });
    for (const auto& block : std::exchange(idleBlocks_, {})) {
        block();
    }
}

void LinuxHelperTransport::close() {
    isClosed_ = true;
    waiting_.clear();
    for (const auto& each : sessions_) {
        if (const auto session = each.lock()) {
            session->end();
        }
    }
    leftBehind_.clear();
}

} // namespace quorvane
