#include "platform/linux/updates/PackageKitUpdates.h"

#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/WaitUntil.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace quorvane::test {
namespace {

using Kind = UpdateStatus::Kind;
using Download = UpdateService::Download;

constexpr QLatin1String packageKit("org.freedesktop.PackageKit");
constexpr QLatin1String networkManager("org.freedesktop.NetworkManager");
constexpr QLatin1String transactionInterface("org.freedesktop.PackageKit.Transaction");
constexpr uint success = 1;
constexpr uint failed = 2;

/// Updates over a PackageKit of the test's own, which tells the packages that the test has put into
/// `packages`, by the name of the question.
class PackageKitUpdatesTest : public testing::Test {
  protected:
    void TearDown() override {
        updates.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void startPackageKit() {
        service = std::make_unique<FakeService>(bus, packageKit, [this](const QDBusMessage& call) {
            if (call.member() == QLatin1String("CreateTransaction")) {
                const QString path = QStringLiteral("/%1_transaction").arg(++transactions);
                return call.createReply(QVariant::fromValue(QDBusObjectPath(path)));
            }
            asked[call.member()] = call.arguments();
            QMetaObject::invokeMethod(
                &context, [this, call] { tell(call.path(), call.member()); }, Qt::QueuedConnection);
            return call.createReply();
        });
    }

    void startNetworkManager(uint metered) {
        network =
            std::make_unique<FakeService>(bus, networkManager, [metered](const QDBusMessage& call) {
                return call.createReply(QVariant::fromValue(QDBusVariant(metered)));
            });
    }

    void tell(const QString& path, const QString& question) {
        for (const QString& package : packages[question]) {
            service->emitSignal(path, transactionInterface, QStringLiteral("Package"),
                                {12U, package, QStringLiteral("summary")});
        }
        if (!errorText.isEmpty()) {
            service->emitSignal(path, transactionInterface, QStringLiteral("ErrorCode"),
                                {2U, errorText});
        }
        service->emitSignal(path, transactionInterface, QStringLiteral("Finished"),
                            {errorText.isEmpty() ? success : failed, 5U});
    }

    UpdateStatus look(Download download = Download::No) {
        std::optional<UpdateStatus> status;
        updates->look(download, [&](const UpdateStatus& told) { status = told; });
        EXPECT_FALSE(status) << "told before it returned";
        EXPECT_TRUE(waitUntil([&] { return status.has_value(); }));
        return status.value_or(UpdateStatus{});
    }

    const QString connectionName = QStringLiteral("updates");
    const QString program = QStringLiteral("/opt/Quorvane.app/Contents/Linux/quorvane");
    const QString installed = QStringLiteral("quorvane;1.0-1;amd64;installed:main");
    const QString newer = QStringLiteral("quorvane;1.2-1;amd64;main");
    const QString other = QStringLiteral("quorvane-extras;9.9-1;amd64;main");
    PrivateBus bus{PrivateBus::Type::System};
    QObject context;
    int transactions = 0;
    std::map<QString, QStringList> packages{{QStringLiteral("SearchFiles"), {installed}}};
    std::map<QString, QVariantList> asked;
    QString errorText;
    std::unique_ptr<FakeService> service;
    std::unique_ptr<FakeService> network;
    std::unique_ptr<PackageKitUpdates> updates =
        std::make_unique<PackageKitUpdates>(bus.connection(connectionName), program);
};

TEST_F(PackageKitUpdatesTest, NoNewerPackage_UpToDate) {
    startPackageKit();
    packages[QStringLiteral("GetUpdates")] = {other};
    EXPECT_EQ(look().kind, Kind::UpToDate);
    EXPECT_EQ(asked[QStringLiteral("SearchFiles")].at(1).toStringList(), QStringList{program});
}

TEST_F(PackageKitUpdatesTest, NewerPackage_IsToldAndNotFetched) {
    startPackageKit();
    packages[QStringLiteral("GetUpdates")] = {other, newer};
    const UpdateStatus status = look();
    EXPECT_EQ(status.kind, Kind::Available);
    EXPECT_EQ(status.text, QStringLiteral("1.2-1"));
    EXPECT_EQ(asked.count(QStringLiteral("UpdatePackages")), 0U);
}

TEST_F(PackageKitUpdatesTest, NewerPackageInTheBackground_OnlyItselfIsFetchedAndNothingInstalled) {
    startPackageKit();
    packages[QStringLiteral("GetUpdates")] = {other, newer};
    EXPECT_EQ(look(Download::Yes).kind, Kind::Downloaded);
    const QVariantList arguments = asked[QStringLiteral("UpdatePackages")];
    constexpr quint64 onlyDownload = 8;
    EXPECT_NE(arguments.at(0).toULongLong() & onlyDownload, 0U);
    EXPECT_EQ(arguments.at(1).toStringList(), QStringList{newer});
}

TEST_F(PackageKitUpdatesTest, ProgramOfNoPackage_IsSaid) {
    startPackageKit();
    packages.clear();
    EXPECT_EQ(look().kind, Kind::NotPackaged);
    EXPECT_EQ(asked.count(QStringLiteral("GetUpdates")), 0U);
}

TEST_F(PackageKitUpdatesTest, NoPackageKit_IsSaid) {
    EXPECT_EQ(look().kind, Kind::NoService);
}

TEST_F(PackageKitUpdatesTest, NoBus_IsSaid) {
    updates = std::make_unique<PackageKitUpdates>(QDBusConnection(QStringLiteral("no such bus")),
                                                  program);
    EXPECT_EQ(look().kind, Kind::NoService);
}

TEST_F(PackageKitUpdatesTest, MeteredConnection_NothingIsAsked) {
    for (const uint metered : {1U, 3U}) {
        startPackageKit();
        startNetworkManager(metered);
        EXPECT_EQ(look(Download::Yes).kind, Kind::Metered);
        EXPECT_EQ(transactions, 0);
        network.reset();
        service.reset();
    }
}

TEST_F(PackageKitUpdatesTest, UnmeteredConnection_IsUsed) {
    startPackageKit();
    startNetworkManager(4);
    EXPECT_EQ(look().kind, Kind::UpToDate);
}

TEST_F(PackageKitUpdatesTest, Failure_IsToldInItsWords) {
    startPackageKit();
    errorText = QStringLiteral("the server is gone");
    const UpdateStatus status = look();
    EXPECT_EQ(status.kind, Kind::Failed);
    EXPECT_EQ(status.text, errorText);
}

TEST_F(PackageKitUpdatesTest, PackageKitEndsInTheMiddle_Failure) {
    startPackageKit();
    service->hold();
    std::optional<UpdateStatus> status;
    updates->look(Download::No, [&](const UpdateStatus& told) { status = told; });
    ASSERT_TRUE(waitUntil([&] { return !service->calls().isEmpty(); }));
    service.reset();
    ASSERT_TRUE(waitUntil([&] { return status.has_value(); }));
    EXPECT_EQ(status->kind, Kind::Failed);
}

TEST_F(PackageKitUpdatesTest, TwoQuestionsAtOnce_OneAnswerForBoth) {
    startPackageKit();
    int told = 0;
    const auto count = [&](const UpdateStatus& status) {
        told += status.kind == Kind::UpToDate ? 1 : 0;
    };
    updates->look(Download::No, count);
    updates->look(Download::No, count);
    EXPECT_TRUE(waitUntil([&] { return told == 2; }));
    EXPECT_EQ(transactions, 2) << "one for the own package, one for the updates";
}

} // namespace
} // namespace quorvane::test
