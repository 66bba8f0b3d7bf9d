#include "platform/linux/updates/PackageKitUpdates.h"

#include "platform/linux/updates/PackageKitTransaction.h"

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

// PackageKit's bit fields.
constexpr quint64 anyPackage = 1U << 1U;
constexpr quint64 installedPackages = 1U << 2U;
constexpr quint64 onlyTrusted = 1U << 1U;
constexpr quint64 onlyDownload = 1U << 3U;

// NetworkManager's answers to whether a connection is metered.
constexpr uint isMetered = 1;
constexpr uint isProbablyMetered = 3;

QString nameOf(const QString& package) {
    return package.section(QLatin1Char(';'), 0, 0);
}

QString versionOf(const QString& package) {
    return package.section(QLatin1Char(';'), 1, 1);
}

BusCall meteredQuery() {
    return {
        .service = QStringLiteral("org.freedesktop.NetworkManager"),
        .path = QStringLiteral("/org/freedesktop/NetworkManager"),
        .interface = QStringLiteral("org.freedesktop.DBus.Properties"),
        .method = QStringLiteral("Get"),
        .arguments = {QStringLiteral("org.freedesktop.NetworkManager"), QStringLiteral("Metered")},
        .limit = BusCall::usualLimit,
        // Where it does not run, nobody knows; starting it would be worse than that.
        .autostart = BusCall::Autostart::No};
}

} // namespace

PackageKitUpdates::PackageKitUpdates(const QDBusConnection& systemBus, QString program)
    : bus_(systemBus), calls_(systemBus), program_(std::move(program)) {}

void PackageKitUpdates::look(Download download, std::function<void(const UpdateStatus&)> done) {
    waiting_.push_back(std::move(done));
    if (waiting_.size() > 1) {
        return;
    }
    download_ = download;
    if (bus_.isConnected()) {
        askWhetherMetered();
    } else { // nothing would ever be heard of a call
        QMetaObject::invokeMethod(
            this, [this] { tell(UpdateStatus::Kind::NoService); }, Qt::QueuedConnection);
    }
}

void PackageKitUpdates::askWhetherMetered() {
    calls_.ask(meteredQuery(), [this](const BusAnswer& answer) {
        const uint metered = answer.property().toUInt();
        if (metered == isMetered || metered == isProbablyMetered) {
            tell(UpdateStatus::Kind::Metered);
        } else {
            askForOwnPackage();
        }
    });
}

void PackageKitUpdates::askForOwnPackage() {
    ask(QStringLiteral("SearchFiles"),
        {QVariant::fromValue(installedPackages), QStringList{program_}},
        [this](const QStringList& packages) {
            if (packages.isEmpty()) {
                tell(UpdateStatus::Kind::NotPackaged);
            } else {
                askForUpdates(packages.first());
            }
        });
}

void PackageKitUpdates::askForUpdates(const QString& ownPackage) {
    ask(QStringLiteral("GetUpdates"), {QVariant::fromValue(anyPackage)},
        [this, name = nameOf(ownPackage)](const QStringList& packages) {
            const auto newer =
                std::find_if(packages.begin(), packages.end(),
                             [&](const QString& each) { return nameOf(each) == name; });
            if (newer == packages.end()) {
                tell(UpdateStatus::Kind::UpToDate);
            } else if (download_ == Download::Yes) {
                fetch(*newer);
            } else {
                tell(UpdateStatus::Kind::Available, versionOf(*newer));
            }
        });
}

void PackageKitUpdates::fetch(const QString& package) {
    ask(QStringLiteral("UpdatePackages"),
        {QVariant::fromValue(onlyTrusted | onlyDownload), QStringList{package}},
        [this, package](const QStringList&) {
            tell(UpdateStatus::Kind::Downloaded, versionOf(package));
        });
}

void PackageKitUpdates::ask(const QString& method, const QVariantList& arguments,
                            const Answered& answered) {
    auto* const transaction = new PackageKitTransaction(bus_, this);
    connect(transaction, &PackageKitTransaction::serviceIsAbsent, this, [this, transaction] {
        transaction->deleteLater();
        tell(UpdateStatus::Kind::NoService);
    });
    connect(transaction, &PackageKitTransaction::ended, this,
            [this, transaction, answered](const QStringList& packages, const QString& error) {
                transaction->deleteLater();
                if (error.isEmpty()) {
                    answered(packages);
                } else {
                    tell(UpdateStatus::Kind::Failed, error);
                }
            });
    transaction->run(method, arguments);
}

void PackageKitUpdates::tell(UpdateStatus::Kind kind, const QString& text) {
    for (const auto& done : std::exchange(waiting_, {})) {
        done({kind, text});
    }
}

} // namespace quorvane
