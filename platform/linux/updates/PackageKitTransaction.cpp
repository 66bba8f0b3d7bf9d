#include "platform/linux/updates/PackageKitTransaction.h"

#include <QDBusObjectPath>

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

BusCall question(const QString& path, const QString& interface, const QString& method,
                 const QVariantList& arguments) {
    return {.service = PackageKitTransaction::serviceName(),
            .path = path,
            .interface = interface,
            .method = method,
            .arguments = arguments,
            .limit = BusCall::usualLimit};
}

} // namespace

PackageKitTransaction::PackageKitTransaction(const QDBusConnection& systemBus, QObject* parent)
    : QObject(parent), bus_(systemBus), calls_(systemBus),
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
    calls_.ask(question(managerPath, managerInterface, QStringLiteral("CreateTransaction"), {}),
               [this](const BusAnswer& answer) { created(answer); });
}

void PackageKitTransaction::created(const BusAnswer& answer) {
    if (answer.kind() == BusAnswer::Kind::Absent) {
        hasEnded_ = true;
        patience_.stop();
        Q_EMIT serviceIsAbsent();
        return;
    }
    path_ = answer.value().value<QDBusObjectPath>().path();
    if (path_.isEmpty()) {
        end(answer.isReply() ? QStringLiteral("PackageKit gives no transaction")
                             : answer.errorText());
        return;
    }
    subscribe();
    calls_.ask(question(path_, transactionInterface, method_, arguments_),
               [this](const BusAnswer& begun) {
                   if (!begun.isReply()) {
                       end(begun.errorText());
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
        calls_.forget();
        patience_.stop();
        Q_EMIT ended(packages_, error);
    }
}

} // namespace quorvane
