#include "platform/linux/PackageKitTransaction.h"

#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>

#include <chrono>

namespace quorvane {

namespace {

// A daemon that asks slow servers takes its time; one that hangs must not be waited for until the
// program ends.
constexpr std::chrono::minutes patience{10};

constexpr uint exitSuccess = 1;

const QString managerPath = QStringLiteral("/org/freedesktop/PackageKit");
const QString managerInterface = QStringLiteral("org.freedesktop.PackageKit");
const QString transactionInterface = QStringLiteral("org.freedesktop.PackageKit.Transaction");

bool saysAbsent(const QDBusMessage& reply) {
    const QDBusError::ErrorType type = QDBusError(reply).type();
    return type == QDBusError::ServiceUnknown || type == QDBusError::NoServer ||
           type == QDBusError::Disconnected ||
           reply.errorName().startsWith(QLatin1String("org.freedesktop.DBus.Error.Spawn"));
}

} // namespace

PackageKitTransaction::PackageKitTransaction(const QDBusConnection& systemBus, QObject* parent)
    : QObject(parent), bus_(systemBus),
      watcher_(serviceName(), systemBus, QDBusServiceWatcher::WatchForUnregistration) {
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { end(QStringLiteral("PackageKit has ended in the middle of it")); });
    patience_.setSingleShot(true);
    patience_.setInterval(patience);
    connect(&patience_, &QTimer::timeout, this,
            [this] { end(QStringLiteral("PackageKit does not answer")); });
}

QString PackageKitTransaction::serviceName() {
    return QStringLiteral("org.freedesktop.PackageKit");
}

void PackageKitTransaction::run(const QString& method, const QVariantList& arguments) {
    method_ = method;
    arguments_ = arguments;
    patience_.start();
    call(QDBusMessage::createMethodCall(serviceName(), managerPath, managerInterface,
                                        QStringLiteral("CreateTransaction")),
         [this](const QDBusMessage& reply) { created(reply); });
}

void PackageKitTransaction::created(const QDBusMessage& reply) {
    if (saysAbsent(reply)) {
        hasEnded_ = true;
        patience_.stop();
        Q_EMIT serviceIsAbsent();
        return;
    }
    path_ = reply.arguments().value(0).value<QDBusObjectPath>().path();
    if (reply.type() == QDBusMessage::ErrorMessage || path_.isEmpty()) {
        end(reply.errorMessage().isEmpty() ? QStringLiteral("PackageKit gives no transaction")
                                           : reply.errorMessage());
        return;
    }
    subscribe();
    QDBusMessage question =
        QDBusMessage::createMethodCall(serviceName(), path_, transactionInterface, method_);
    question.setArguments(arguments_);
    call(question, [this](const QDBusMessage& answer) {
        if (answer.type() == QDBusMessage::ErrorMessage) {
            end(answer.errorMessage());
        }
    });
}

void PackageKitTransaction::subscribe() {
    const auto connectTo = [this](const char* signal, const char* slot) {
        bus_.connect(serviceName(), path_, transactionInterface, QLatin1String(signal), this, slot);
    };
    connectTo("Package", SLOT(packageTold(QDBusMessage)));
    connectTo("ErrorCode", SLOT(errorTold(QDBusMessage)));
    connectTo("Finished", SLOT(finished(QDBusMessage)));
}

void PackageKitTransaction::call(const QDBusMessage& message,
                                 const std::function<void(const QDBusMessage&)>& answered) {
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answered] {
        watcher->deleteLater();
        if (!hasEnded_) {
            answered(watcher->reply());
        }
    });
}

void PackageKitTransaction::packageTold(const QDBusMessage& signal) {
    packages_.append(signal.arguments().value(1).toString());
}

void PackageKitTransaction::errorTold(const QDBusMessage& signal) {
    error_ = signal.arguments().value(1).toString();
}

void PackageKitTransaction::finished(const QDBusMessage& signal) {
    if (signal.arguments().value(0).toUInt() == exitSuccess) {
        end({});
    } else {
        end(error_.isEmpty() ? QStringLiteral("PackageKit has failed") : error_);
    }
}

void PackageKitTransaction::end(const QString& error) {
    if (!hasEnded_) {
        hasEnded_ = true;
        patience_.stop();
        Q_EMIT ended(packages_, error);
    }
}

} // namespace quorvane
