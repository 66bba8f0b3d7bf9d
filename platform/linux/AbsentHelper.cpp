#include "platform/linux/AbsentHelper.h"

#include "helper/HelperToolProtocol.h"

#include <QThreadPool>

#include <utility>

namespace quorvane {

namespace {

QString absence() {
    return QStringLiteral("this bundle carries no helper");
}

// Every command fails. The handler must not run on the main thread, as with a real connection.
class UndeliverableCommands final : public HelperToolProtocol {
  public:
    explicit UndeliverableCommands(HelperConnection::ErrorHandler errorHandler)
        : errorHandler_(std::move(errorHandler)) {}

    void loadModuleNamed(const QString& /*path*/, StatusReply /*reply*/) override { fail(); }

    void unloadModuleNamed(const QString& /*path*/, StatusReply /*reply*/) override { fail(); }

    void getTaskPowerMetrics(LinesReply /*reply*/) override { fail(); }

    void getVersion(StatusReply /*reply*/) override { fail(); }

    void enableLowPowerMode(StatusReply /*reply*/) override { fail(); }

    void disableLowPowerMode(StatusReply /*reply*/) override { fail(); }

  private:
    void fail() const {
        QThreadPool::globalInstance()->start([handler = errorHandler_] { handler(absence()); });
    }

    HelperConnection::ErrorHandler errorHandler_;
};

class UnreachableConnection final : public HelperConnection {
  public:
    void setInvalidationHandler(std::function<void()> handler) override {
        handler_ = std::move(handler);
    }

    void resume() override {}

    void invalidate() override {
        if (auto handler = std::exchange(handler_, {})) {
            QThreadPool::globalInstance()->start(std::move(handler));
        }
    }

    std::shared_ptr<HelperToolProtocol> remoteObjectProxy(ErrorHandler errorHandler) override {
        return std::make_shared<UndeliverableCommands>(std::move(errorHandler));
    }

  private:
    std::function<void()> handler_;
};

} // namespace

bool AbsentHelper::isInstalled(const QString& /*label*/) const {
    return false;
}

std::optional<QString> AbsentHelper::install(const QString& /*label*/) {
    return absence();
}

std::optional<QString> AbsentHelper::remove(const QString& /*label*/) {
    return absence();
}

std::unique_ptr<HelperConnection> AbsentHelper::connectTo(const QString& /*serviceName*/) {
    return std::make_unique<UnreachableConnection>();
}

std::unique_ptr<AuthorizationRef> AbsentHelper::create() {
    return std::make_unique<AuthorizationRef>();
}

std::optional<QByteArray> AbsentHelper::externalForm(const AuthorizationRef& /*ref*/) {
    return QByteArray(externalFormLength, '\0');
}

Authorization::RightStatus AbsentHelper::right(const QString& /*name*/) {
    return RightStatus::Exists;
}

bool AbsentHelper::setRight(const AuthorizationRef& /*ref*/, const QString& /*name*/,
                            const QString& /*rule*/, const QString& /*description*/,
                            const QString& /*table*/) {
    return false;
}

} // namespace quorvane
