#include "platform/simulated/SimulatedHelper.h"

#include "platform/HelperToolProtocol.h"

#include <QMap>

#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

namespace quorvane {

namespace {

// Commands, replies and handlers run on one thread that is not the main one, as with the real
// transport. Not on one of Qt's pools: ThreadSanitizer would see none of its hand-overs.
class Queue {
  public:
    Queue() = default;

    /// What is queued still runs.
    ~Queue() {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        changed_.notify_all();
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    void run(std::function<void()> block) {
        const std::lock_guard lock(mutex_);
        blocks_.push_back(std::move(block));
        if (!thread_.joinable()) {
            thread_ = std::thread([this] { work(); });
        }
        changed_.notify_all();
    }

    void settle() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return blocks_.empty() && !isRunning_; });
    }

  private:
    void work() {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return isEnding_ || !blocks_.empty(); });
            if (blocks_.empty()) {
                return;
            }
            std::function<void()> block = std::move(blocks_.front());
            blocks_.pop_front();
            isRunning_ = true;
            lock.unlock();
            block();
            block = nullptr; // what it holds ends before it counts as done
            lock.lock();
            isRunning_ = false;
            changed_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> blocks_;
    bool isRunning_ = false;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace

struct SimulatedHelper::Shared {
    std::mutex mutex;
    State state = State::Answers;
    QString version;
    QStringList calls;
    std::function<void(const QString& call)> sendListener; ///< of the sending thread's
    QMap<QString, QString> replies{
        {QStringLiteral("load"), QStringLiteral("loaded")},
        {QStringLiteral("unload"), QStringLiteral("unloaded")},
        {QStringLiteral("low power on"), QStringLiteral("on")},
        {QStringLiteral("low power off"), QStringLiteral("off")},
    };
    std::list<std::weak_ptr<std::function<void()>>> invalidationHandlers;
    std::list<std::weak_ptr<Queue>> queues;

    void note(const QString& call) {
        const std::lock_guard lock(mutex);
        calls.append(call);
    }

    [[nodiscard]] QString reply(const QString& command) {
        const std::lock_guard lock(mutex);
        return replies.value(command);
    }
};

namespace {

using Shared = std::shared_ptr<SimulatedHelper::Shared>;

class Proxy final : public HelperToolProtocol {
  public:
    Proxy(Shared shared, std::shared_ptr<Queue> queue, HelperConnection::ErrorHandler errorHandler)
        : shared_(std::move(shared)), queue_(std::move(queue)),
          errorHandler_(std::move(errorHandler)) {}

    void loadModuleNamed(const QString& path, StatusReply reply) override {
        sendStatus(QStringLiteral("load"), path, std::move(reply));
    }

    void unloadModuleNamed(const QString& path, StatusReply reply) override {
        sendStatus(QStringLiteral("unload"), path, std::move(reply));
    }

    void getTaskPowerMetrics(LinesReply reply) override {
        send(QStringLiteral("metrics"), [reply] { reply({}); });
    }

    void getVersion(StatusReply reply) override {
        send(QStringLiteral("version"), [shared = shared_, reply] {
            QString version;
            {
                const std::lock_guard lock(shared->mutex);
                version = shared->version;
            }
            reply(version);
        });
    }

    void enableLowPowerMode(StatusReply reply) override {
        sendStatus(QStringLiteral("low power on"), {}, std::move(reply));
    }

    void disableLowPowerMode(StatusReply reply) override {
        sendStatus(QStringLiteral("low power off"), {}, std::move(reply));
    }

  private:
    void sendStatus(const QString& command, const QString& argument, StatusReply reply) {
        const QString call = argument.isEmpty() ? command : command + QLatin1Char(' ') + argument;
        send(call, [shared = shared_, command, reply = std::move(reply)] {
            reply(shared->reply(command));
        });
    }

    void send(const QString& call, std::function<void()> answer) {
        if (shared_->sendListener) {
            shared_->sendListener(call);
        }
        queue_->run([shared = shared_, call, answer = std::move(answer), onError = errorHandler_] {
            shared->note(call);
            SimulatedHelper::State state{};
            {
                const std::lock_guard lock(shared->mutex);
                state = shared->state;
            }
            if (state == SimulatedHelper::State::Gone) {
                onError(QStringLiteral("the helper cannot be reached"));
            } else if (state == SimulatedHelper::State::Answers) {
                answer();
            }
        });
    }

    Shared shared_;
    std::shared_ptr<Queue> queue_;
    HelperConnection::ErrorHandler errorHandler_;
};

class Connection final : public HelperConnection {
  public:
    explicit Connection(Shared shared)
        : shared_(std::move(shared)), queue_(std::make_shared<Queue>()),
          handler_(std::make_shared<std::function<void()>>()) {
        const std::lock_guard lock(shared_->mutex);
        shared_->queues.push_back(queue_);
    }

    void setInvalidationHandler(std::function<void()> handler) override {
        const std::lock_guard lock(shared_->mutex);
        *handler_ = std::move(handler);
    }

    void resume() override {
        const std::lock_guard lock(shared_->mutex);
        shared_->invalidationHandlers.push_back(handler_);
    }

    void invalidate() override {
        queue_->run([shared = shared_, handler = handler_] {
            std::function<void()> block;
            {
                const std::lock_guard lock(shared->mutex);
                block = std::exchange(*handler, {});
            }
            if (block) {
                block();
            }
        });
    }

    std::shared_ptr<HelperToolProtocol> remoteObjectProxy(ErrorHandler errorHandler) override {
        return std::make_shared<Proxy>(shared_, queue_, std::move(errorHandler));
    }

  private:
    Shared shared_;
    std::shared_ptr<Queue> queue_;
    std::shared_ptr<std::function<void()>> handler_;
};

} // namespace

SimulatedHelper::SimulatedHelper() : shared_(std::make_shared<SimulatedHelper::Shared>()) {}

SimulatedHelper::~SimulatedHelper() = default;

bool SimulatedHelper::isInstalled(const QString& /*label*/) const {
    return installed_;
}

void SimulatedHelper::install(const QString& /*label*/, Done done) {
    shared_->note(QStringLiteral("install"));
    prompt([this, done = std::move(done)] {
        if (!installError_) {
            installed_ = true;
            setVersion(bundledVersion_);
            setState(State::Answers);
        }
        done(installError_);
    });
}

void SimulatedHelper::remove(const QString& /*label*/, Done done) {
    shared_->note(QStringLiteral("remove"));
    prompt([this, done = std::move(done)] {
        if (!removeError_) {
            installed_ = false;
            setState(State::Gone);
        }
        done(removeError_);
    });
}

void SimulatedHelper::prompt(std::function<void()> change) {
    if (holdsPrompts_) {
        heldPrompts_.push_back(std::move(change));
    } else {
        change();
    }
}

void SimulatedHelper::answerPrompts() {
    holdsPrompts_ = false;
    for (const auto& change : std::exchange(heldPrompts_, {})) {
        change();
    }
}

std::unique_ptr<HelperConnection> SimulatedHelper::connectTo(const QString& /*serviceName*/) {
    shared_->note(QStringLiteral("connect"));
    return std::make_unique<Connection>(shared_);
}

void SimulatedHelper::setVersion(const QString& version) {
    const std::lock_guard lock(shared_->mutex);
    shared_->version = version;
}

void SimulatedHelper::setReply(const QString& command, const QString& reply) {
    const std::lock_guard lock(shared_->mutex);
    shared_->replies.insert(command, reply);
}

void SimulatedHelper::setSendListener(std::function<void(const QString& call)> listener) {
    shared_->sendListener = std::move(listener);
}

void SimulatedHelper::setState(State state) {
    const std::lock_guard lock(shared_->mutex);
    shared_->state = state;
}

void SimulatedHelper::invalidateConnections() {
    std::list<std::function<void()>> blocks;
    {
        const std::lock_guard lock(shared_->mutex);
        for (const auto& each : std::exchange(shared_->invalidationHandlers, {})) {
            if (const auto handler = each.lock()) {
                blocks.push_back(std::exchange(*handler, {}));
            }
        }
    }
    for (const auto& block : blocks) {
        if (block) {
            block();
        }
    }
}

void SimulatedHelper::settle() {
    std::list<std::weak_ptr<Queue>> queues;
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->queues.remove_if([](const auto& each) { return each.expired(); });
        queues = shared_->queues;
    }
    for (const auto& each : queues) {
        if (const auto queue = each.lock()) {
            queue->settle();
        }
    }
}

QStringList SimulatedHelper::calls() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->calls;
}

} // namespace quorvane
