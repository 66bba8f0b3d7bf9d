#include "platform/linux/helperclient/LinuxHelperInstaller.h"

#include "platform/linux/common/HelperNames.h"
#include "tests/support/FakeService.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace quorvane::test {
namespace {

const QString label = helpernames::label;
const QString bundleHelper = QStringLiteral("bundle/") + label;
const QString packagedHelper = QStringLiteral("packaged/") + label;
const QString installedHelper = QStringLiteral("installed/") + label;
const QString openFile = QStringLiteral("open");
const QString statusFile = QStringLiteral("status");

/// The installer with a script in the place of pkexec, which notes its arguments in "prompts", says
/// what is in "words" on standard error, does not end while there is a file "open", and ends with
/// the status in "status".
class LinuxHelperInstallerTest : public testing::Test {
  protected:
    void SetUp() override {
        put(bundleHelper);
        put(QStringLiteral("pkexec"), "#!/bin/sh\ncd '" + QFile::encodeName(folder.path()) +
                                          "'\n"
                                          "echo \"$*\" >>prompts\n"
                                          "test ! -e words || cat words >&2\n"
                                          "while test -e open; do sleep 0.01; done\n"
                                          "test ! -e status || exit $(cat status)\n");
        QFile::setPermissions(path("pkexec"), QFile::ReadOwner | QFile::ExeOwner);
        startPolkit();
        makeInstaller();
    }

    void TearDown() override {
        installer.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void startPolkit() {
        polkit = std::make_unique<FakeService>(
            bus, QStringLiteral("org.freedesktop.PolicyKit1"),
            [](const QDBusMessage& call) { return call.createReply(); });
    }

    void makeInstaller() {
        installer = std::make_unique<LinuxHelperInstaller>(
            bus.connection(connectionName),
            LinuxHelperInstaller::Places{path("bundle"), path("packaged"), path("installed"),
                                         path("pkexec")});
        QObject::connect(installer.get(), &LinuxHelperInstaller::installationBegan,
                         [this] { told.append(QStringLiteral("began")); });
        QObject::connect(installer.get(), &LinuxHelperInstaller::installationEnded,
                         [this](const std::optional<QString>& error) {
                             told.append(QStringLiteral("ended ") +
                                         error.value_or(QStringLiteral("well")));
                         });
    }

    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    [[nodiscard]] QString path(const char* name) const { return path(QLatin1String(name)); }

    void put(const QString& name, const QByteArray& text = {}) const {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    void take(const QString& name) const { ASSERT_TRUE(QFile::remove(path(name))); }

    [[nodiscard]] HelperInstaller::Done note(const char* what) {
        return [this, what](const std::optional<QString>& error) {
            told.append(QLatin1String(what) + QLatin1String(": ") +
                        error.value_or(QStringLiteral("done")));
        };
    }

    void install() { installer->install(label, note("install")); }

    void remove() { installer->remove(label, note("remove")); }

    /// What pkexec was started with, without what all its starts have in common.
    [[nodiscard]] QStringList prompts() const {
        QFile file(path("prompts"));
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        QString text = QString::fromUtf8(file.readAll());
        text.replace(QStringLiteral("--disable-internal-agent ") + folder.path() + QLatin1Char('/'),
                     QString());
        return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    [[nodiscard]] bool isTold(const QStringList& lines) {
        return waitUntil([&] { return told.size() >= lines.size(); }) && told == lines;
    }

    static void settle() {
        [[maybe_unused]] const bool never =
            waitUntil([] { return false; }, std::chrono::milliseconds(200));
    }

    const QString installPrompt = bundleHelper + QStringLiteral(" --install");
    const QString replacePrompt = bundleHelper + QStringLiteral(" --replace");
    const QString removePrompt = installedHelper + QStringLiteral(" --remove");
    const QString wasClosed =
        QStringLiteral("the prompt for an administrator's password was closed");
    const QString connectionName = QStringLiteral("installer");
    PrivateBus bus{PrivateBus::Type::System};
    QTemporaryDir folder;
    QStringList told; ///< what the installer told, in order
    std::unique_ptr<FakeService> polkit;
    std::unique_ptr<LinuxHelperInstaller> installer;
};

TEST_F(LinuxHelperInstallerTest, Installed_IsWhatLiesInEitherFolder) {
    EXPECT_FALSE(installer->isInstalled(label));
    put(installedHelper);
    EXPECT_TRUE(installer->isInstalled(label));
    take(installedHelper);
    put(packagedHelper);
    EXPECT_TRUE(installer->isInstalled(label));
}

TEST_F(LinuxHelperInstallerTest, Install_AsksOnceThroughTheBundlesHelperAndBlocksNothing) {
    put(openFile);
    install();
    EXPECT_EQ(told, QStringList{QStringLiteral("began")});
    ASSERT_TRUE(waitUntil([this] { return !prompts().isEmpty(); }));
    settle();
    EXPECT_EQ(told, QStringList{QStringLiteral("began")});
    take(openFile);
    EXPECT_TRUE(isTold(
        {QStringLiteral("began"), QStringLiteral("install: done"), QStringLiteral("ended well")}));
    EXPECT_EQ(prompts(), QStringList{installPrompt});
}

TEST_F(LinuxHelperInstallerTest, Remove_AsksThroughTheInstalledHelper) {
    put(installedHelper);
    remove();
    EXPECT_TRUE(isTold({QStringLiteral("remove: done")}));
    EXPECT_EQ(prompts(), QStringList{removePrompt});
}

TEST_F(LinuxHelperInstallerTest, RemoveWithNothingInstalled_FailsWithoutAPrompt) {
    remove();
    EXPECT_TRUE(isTold({QStringLiteral("remove: no helper is installed")}));
    EXPECT_TRUE(prompts().isEmpty());
}

TEST_F(LinuxHelperInstallerTest, RemoveDirectlyFollowedByInstall_IsOnePromptAndBothAreToldInOrder) {
    put(installedHelper);
    remove();
    install();
    EXPECT_TRUE(isTold({QStringLiteral("began"), QStringLiteral("remove: done"),
                        QStringLiteral("install: done"), QStringLiteral("ended well")}));
    settle();
    EXPECT_EQ(prompts(), QStringList{replacePrompt});
}

TEST_F(LinuxHelperInstallerTest, SecondInstallDuringAPrompt_JoinsIt) {
    put(openFile);
    install();
    ASSERT_TRUE(waitUntil([this] { return !prompts().isEmpty(); }));
    install();
    remove();
    install();
    take(openFile);
    EXPECT_TRUE(isTold({QStringLiteral("began"), QStringLiteral("install: done"),
                        QStringLiteral("install: done"), QStringLiteral("remove: done"),
                        QStringLiteral("install: done"), QStringLiteral("ended well")}));
    settle();
    EXPECT_EQ(prompts().size(), 1);
}

TEST_F(LinuxHelperInstallerTest, RemoveDuringAPrompt_WaitsForItsTurn) {
    put(openFile);
    install();
    ASSERT_TRUE(waitUntil([this] { return !prompts().isEmpty(); }));
    put(installedHelper);
    remove();
    settle();
    EXPECT_EQ(prompts(), QStringList{installPrompt});
    take(openFile);
    EXPECT_TRUE(isTold({QStringLiteral("began"), QStringLiteral("install: done"),
                        QStringLiteral("ended well"), QStringLiteral("remove: done")}));
    EXPECT_EQ(prompts(), (QStringList{installPrompt, removePrompt}));
}

TEST_F(LinuxHelperInstallerTest, PackagedHelper_IsTheDistributionsAndNobodyIsAsked) {
    put(packagedHelper);
    const QString reason = QStringLiteral("the helper belongs to a package of the system, which "
                                          "alone may change it");
    remove();
    install();
    EXPECT_TRUE(isTold({QStringLiteral("began"), QStringLiteral("remove: ") + reason,
                        QStringLiteral("install: ") + reason, QStringLiteral("ended well")}));
    remove();
    EXPECT_TRUE(waitUntil([this] { return told.size() == 5; }));
    EXPECT_EQ(told.constLast(), QStringLiteral("remove: ") + reason);
    EXPECT_TRUE(prompts().isEmpty());
}

TEST_F(LinuxHelperInstallerTest, PromptThatWasClosed_IsNotShownAgainUntilAnExplicitRemoval) {
    put(statusFile, QByteArray("126"));
    install();
    EXPECT_TRUE(isTold({QStringLiteral("began"), QStringLiteral("install: ") + wasClosed,
                        QStringLiteral("ended ") + wasClosed}));
    take(statusFile);
    told.clear();

    put(installedHelper);
    const QString before =
        wasClosed + QStringLiteral(" before; it is shown again after the next start");
    remove();
    install(); // a newer version: no reason to begin with it again
    EXPECT_TRUE(isTold({QStringLiteral("began"), QStringLiteral("remove: ") + before,
                        QStringLiteral("install: ") + before, QStringLiteral("ended well")}));
    EXPECT_EQ(prompts(), QStringList{installPrompt});
    told.clear();

    remove();
    EXPECT_TRUE(isTold({QStringLiteral("remove: done")}));
    install();
    EXPECT_TRUE(isTold({QStringLiteral("remove: done"), QStringLiteral("began"),
                        QStringLiteral("install: done"), QStringLiteral("ended well")}));
    EXPECT_EQ(prompts(), (QStringList{installPrompt, removePrompt, installPrompt}));
}

TEST_F(LinuxHelperInstallerTest, ClosedPromptForARemoval_DoesNotKeepFromAskingAgain) {
    put(installedHelper);
    put(statusFile, QByteArray("126"));
    remove();
    EXPECT_TRUE(isTold({QStringLiteral("remove: ") + wasClosed}));
    take(statusFile);
    remove();
    EXPECT_TRUE(isTold({QStringLiteral("remove: ") + wasClosed, QStringLiteral("remove: done")}));
}

TEST_F(LinuxHelperInstallerTest, Failure_IsToldInTheLastWordsAndMadeFitForALog) {
    put(statusFile, QByteArray("127"));
    put(QStringLiteral("words"),
        QByteArray("first\nthe last\x1b[31m line\xe2\x80\xae ") + QByteArray(500, 'x') + "\n\n");
    install();
    ASSERT_TRUE(waitUntil([this] { return told.size() == 3; }));
    const QString error = told.at(1).mid(QStringLiteral("install: ").size());
    EXPECT_TRUE(error.startsWith(QStringLiteral("the last [31m line xxx"))) << error.toStdString();
    EXPECT_EQ(error.size(), 200);
    EXPECT_EQ(told.at(2), QStringLiteral("ended ") + error);
}

TEST_F(LinuxHelperInstallerTest, FailureWithoutWords_IsToldByItsStatusAndCanBeTriedAgain) {
    put(statusFile, QByteArray("3"));
    install();
    EXPECT_TRUE(
        isTold({QStringLiteral("began"), QStringLiteral("install: it ended with the status 3"),
                QStringLiteral("ended it ended with the status 3")}));
    take(statusFile);
    install();
    EXPECT_TRUE(waitUntil([this] { return told.size() == 6; }));
    EXPECT_EQ(told.at(4), QStringLiteral("install: done"));
}

TEST_F(LinuxHelperInstallerTest, ReplacementThatFails_LeavesTheHelperThatIsThereInUse) {
    put(installedHelper);
    put(statusFile, QByteArray("3"));
    remove();
    install();
    EXPECT_TRUE(isTold(
        {QStringLiteral("began"), QStringLiteral("remove: it ended with the status 3"),
         QStringLiteral("install: it ended with the status 3"), QStringLiteral("ended well")}));
}

TEST_F(LinuxHelperInstallerTest, WithoutPolkit_NothingIsStarted) {
    polkit.reset();
    const QString reason =
        QStringLiteral("polkit does not run here, so no administrator can be asked");
    install();
    EXPECT_TRUE(isTold({QStringLiteral("began"), QStringLiteral("install: ") + reason,
                        QStringLiteral("ended ") + reason}));
    EXPECT_TRUE(prompts().isEmpty());
}

TEST_F(LinuxHelperInstallerTest, PolkitThatTheBusCanStart_IsGoodEnough) {
    polkit.reset();
    put(QDir(folder.path()).relativeFilePath(bus.serviceFolder()) +
            QStringLiteral("/polkit.service"),
        "[D-BUS Service]\nName=org.freedesktop.PolicyKit1\nExec=/bin/false\n");
    install();
    EXPECT_TRUE(isTold(
        {QStringLiteral("began"), QStringLiteral("install: done"), QStringLiteral("ended well")}));
}

TEST_F(LinuxHelperInstallerTest, WithoutABus_NothingIsStarted) {
    installer = std::make_unique<LinuxHelperInstaller>(
        QDBusConnection(QStringLiteral("no such bus")),
        LinuxHelperInstaller::Places{path("bundle"), path("packaged"), path("installed"),
                                     path("pkexec")});
    install();
    EXPECT_TRUE(isTold({QStringLiteral("install: there is no system bus to ask for an "
                                       "administrator's consent")}));
    EXPECT_TRUE(prompts().isEmpty());
}

TEST_F(LinuxHelperInstallerTest, WithoutPkexec_FailureIsTold) {
    QFile::remove(path("pkexec"));
    install();
    ASSERT_TRUE(waitUntil([this] { return told.size() == 3; }));
    EXPECT_TRUE(told.at(1).startsWith(QStringLiteral("install: ") + path("pkexec")))
        << told.at(1).toStdString();
}

TEST_F(LinuxHelperInstallerTest, BundleWithoutAHelper_FailsWithoutAPrompt) {
    take(bundleHelper);
    install();
    EXPECT_TRUE(
        isTold({QStringLiteral("began"), QStringLiteral("install: this bundle carries no helper"),
                QStringLiteral("ended this bundle carries no helper")}));
    EXPECT_TRUE(prompts().isEmpty());
}

TEST_F(LinuxHelperInstallerTest, ProgramThatEndsDuringAPrompt_ClosesItAndTellsNobody) {
    put(openFile);
    install();
    ASSERT_TRUE(waitUntil([this] { return !prompts().isEmpty(); }));
    installer.reset();
    settle();
    EXPECT_EQ(told, QStringList{QStringLiteral("began")});
}

} // namespace
} // namespace quorvane::test
