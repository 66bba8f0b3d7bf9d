#include "helperclient/HelperTool.h"

#include "core/SharedInstances.h"
#include "helperclient/Common.h"
#include "helperclient/Requirement.h"
#include "platform/Bundle.h"
#include "platform/Clock.h"
#include "platform/HelperInstaller.h"
#include "platform/Log.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "plist/PropertyList.h"

#include <QLocale>
#include <QSemaphore>

#include <mutex>

namespace quorvane {

namespace {

constexpr Seconds versionLimit{5.0};

std::optional<double> decimalNumber(const QString& text) {
    bool isNumber = false;
    const double number = QLocale::c().toDouble(text.trimmed(), &isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

QString described(const std::optional<double>& version) {
    return version ? QString::number(*version, 'g', QLocale::FloatingPointShortest)
                   : QStringLiteral("(null)");
}

float asFloat(const std::optional<double>& version) {
    return static_cast<float>(version.value_or(0.0));
}

// Shared by the asking thread and the reply, which may come long after nobody waits any more.
struct VersionAnswer {
    QSemaphore arrived;
    std::mutex mutex;
    QString text;
};

} // namespace

HelperTool::HelperTool() {
    setupAuthRef();
}

HelperTool::~HelperTool() {
    if (helperToolConnection_) {
        helperToolConnection_->setInvalidationHandler({});
    }
}

HelperTool& HelperTool::helperTool() {
    return SharedInstances::get<HelperTool>();
}

QString HelperTool::label() {
    return QStringLiteral("com.TarnwickStudios.quorvane.helper");
}

void HelperTool::setupAuthRef() {
    Authorization& store = platform().authorization();
    authRef_ = store.create();
    require(authRef_ != nullptr, "err == errAuthorizationSuccess");
    const std::optional<QByteArray> form = store.externalForm(*authRef_);
    require(form && form->size() == Authorization::externalFormLength,
            "err == errAuthorizationSuccess");
    authorization_ = *form;
    Common::setupAuthorizationRights(authRef_.get());
}

bool HelperTool::isHelperToolInstalled() const {
    return platform().helperInstaller().isInstalled(label());
}

void HelperTool::installAction() {
    platform().helperInstaller().install(label(), [](const std::optional<QString>& error) {
        if (!error) {
            log(QStringLiteral("Success installing helper"));
        }
    });
}

void HelperTool::removeAction() {
    platform().helperInstaller().remove(label(), [](const std::optional<QString>& error) {
        if (error) {
            log(QStringLiteral("error removing helper %1").arg(*error));
        } else {
            log(QStringLiteral("Success removed helper"));
        }
    });
}

void HelperTool::installLatestVersion() {
    if (isHelperToolInstalled()) {
        checkHelperVersionAndUpdate();
    } else {
        installAction();
    }
}

bool HelperTool::uninstall() {
    removeAction();
    return true;
}

std::optional<double> HelperTool::versionNumber() {
    if (installedVersion_) {
        return installedVersion_;
    }
    const auto answer = std::make_shared<VersionAnswer>();
    connectAndExecuteCommandBlock([this, answer](const std::optional<QString>& error) {
        if (error) {
            log(QStringLiteral("get version number connect error %1").arg(*error));
            answer->arrived.release();
            return;
        }
        const auto proxy = helperToolConnection_->remoteObjectProxy([](const QString& proxyError) {
            log(QStringLiteral("get version number proxy error %1").arg(proxyError));
        });
        proxy->getVersion([answer](const QString& version) {
            const std::lock_guard lock(answer->mutex);
            answer->text = version;
            answer->arrived.release();
        });
    });
    [[maybe_unused]] const bool inTime = platform().clock().wait(answer->arrived, versionLimit);
    const std::lock_guard lock(answer->mutex);
    installedVersion_ = decimalNumber(answer->text);
    return installedVersion_;
}

std::optional<double> HelperTool::getBundleHelperVersion() const {
    const auto data =
        platform().bundle().resource(QStringLiteral("TurboHelper-info"), QStringLiteral("plist"));
    if (!data) {
        return std::nullopt;
    }
    const PropertyListResult list = readPropertyList(*data);
    return list.value ? decimalNumber(
                            list.value->toMap().value(QStringLiteral("CFBundleVersion")).toString())
                      : std::nullopt;
}

void HelperTool::checkHelperVersionAndUpdate() {
    const std::optional<double> running = versionNumber();
    const std::optional<double> available = getBundleHelperVersion();
    log(QStringLiteral("Checked helper tool version: (Available: %1, Running: %2)")
            .arg(described(available), described(running)));
    if (asFloat(available) > asFloat(running)) {
        if (helperToolConnection_) {
            helperToolConnection_->invalidate();
        }
        installedVersion_.reset();
        removeAction();
        installAction();
    }
}

void HelperTool::connectToHelperTool() {
    require(isMainThread(), "[NSThread isMainThread]");
    if (helperToolConnection_) {
        return;
    }
    helperToolConnection_ = platform().helperTransport().connectTo(label());
    // The handler comes on another thread, when a later connection may have taken this one's place.
    const HelperConnection* connection = helperToolConnection_.get();
    helperToolConnection_->setInvalidationHandler([this, connection] {
        queueOnMain(this, [this, connection] { connectionInvalidated(connection); });
    });
    helperToolConnection_->resume();
}

void HelperTool::connectionInvalidated(const HelperConnection* connection) {
    if (helperToolConnection_.get() == connection) {
        helperToolConnection_.reset();
    }
    log(QStringLiteral("Connection invalidated"));
}

void HelperTool::connectAndExecuteCommandBlock(const CommandBlock& block) {
    require(isMainThread(), "[NSThread isMainThread]");
    connectToHelperTool();
    block(std::nullopt);
}

void HelperTool::safeExecuteBlock(const ProxyBlock& block) {
    connectAndExecuteCommandBlock([this, &block](const std::optional<QString>& error) {
        if (error) {
            log(QStringLiteral("Load module connect error: %1").arg(*error));
            return;
        }
        const auto proxy = helperToolConnection_->remoteObjectProxy([](const QString& proxyError) {
            log(QStringLiteral("Execute block error: %1").arg(proxyError));
        });
        block(*proxy);
    });
}

} // namespace quorvane
