#include "apps/helper/ActionNames.h"
#include "apps/helper/CallLimits.h"
#include "apps/helper/ExtensionBundles.h"
#include "apps/helper/LoadedList.h"
#include "apps/helper/RunTimeConfiguration.h"
#include "helperclient/Common.h"
#include "tests/support/SourceFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace quorvane::test {
namespace {

void putFile(const QString& path, const QByteArray& text) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

// Which action.

TEST(ActionNamesTest, NamesThatPolkitCannotHold_AreMappedByOneRule) {
    using actionnames::polkitAction;
    EXPECT_EQ(polkitAction(QStringLiteral("com.TarnwickStudios.quorvane..startWebService")),
              actionnames::taskPowerMetrics);
    EXPECT_EQ(polkitAction(QStringLiteral("a...b_c d")), QStringLiteral("a.b-c-d"));
    EXPECT_EQ(polkitAction(actionnames::slowDown), actionnames::slowDown);
}

TEST(ActionNamesTest, EveryRightOfTheTable_HasAnActionInThePolicy) {
    const QString text = QString::fromUtf8(sourceFile(QStringLiteral(
        "packaging/helper/polkit-1/actions/com.TarnwickStudios.quorvane.helper.policy")));
    int rights = 0;
    Common::enumerateRightsUsingBlock(
        [&](const QString& name, const QString& /*rule*/, const QString& /*description*/) {
            ++rights;
            EXPECT_TRUE(text.contains(
                QStringLiteral("<action id=\"%1\">").arg(actionnames::polkitAction(name))))
                << name.toStdString();
        });
    EXPECT_GT(rights, 0);
}

// Which extension.

TEST(ExtensionBundlesTest, OnlyTheLastComponentOfAPath_Counts) {
    for (const char* path :
         {"CPUTune.kext", "/CPUTune.kext", "/tmp/evil/CPUTune.kext", "../../CPUTune.kext///"}) {
        EXPECT_EQ(ExtensionBundles::meant(QString::fromLatin1(path)), ExtensionBundles::cpuTune)
            << path;
    }
    for (const char* path : {"", "/", "///", ".", "..", "cputune.kext", "CPUTune.kext/..",
                             "CPUTune.kext/x", "CPUTune.kext\n", " CPUTune.kext", "CPUTune"}) {
        EXPECT_FALSE(ExtensionBundles::meant(QString::fromLatin1(path))) << path;
    }
    EXPECT_FALSE(ExtensionBundles::meant(QString(1 << 20, QLatin1Char('/'))));
    EXPECT_FALSE(ExtensionBundles::meant(QString(1 << 20, QLatin1Char('a'))));
}

/// The two bundles as they are installed.
class OwnBundlesTest : public testing::Test {
  protected:
    void SetUp() override {
        putFile(info(), R"(<plist version="1.0"><dict>
            <key>CFBundleIdentifier</key><string>com.TarnwickStudios.cputune</string>
            <key>CFBundleVersion</key><string>1.9</string></dict></plist>)");
        ASSERT_TRUE(QFile::setPermissions(info(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                      QFileDevice::ReadOther));
    }

    [[nodiscard]] QString bundle() const { return folder.filePath(ExtensionBundles::cpuTune); }

    [[nodiscard]] QString info() const { return bundle() + QStringLiteral("/Contents/Info.plist"); }

    [[nodiscard]] std::optional<Extension> find() const {
        return ExtensionBundles(folder.path()).find(ExtensionBundles::cpuTune);
    }

    static void allowEverybodyToWrite(const QString& path) {
        ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0777), 0);
    }

    QTemporaryDir folder;
};

TEST_F(OwnBundlesTest, Bundle_TellsItsIdentifierAndVersion) {
    const std::optional<Extension> found = find();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->identifier, QStringLiteral("com.TarnwickStudios.cputune"));
    EXPECT_EQ(found->version, QStringLiteral("1.9"));
}

TEST_F(OwnBundlesTest, BundleThatOthersMayWrite_IsRefused) {
    for (const QString& place :
         {folder.path(), bundle(), bundle() + QStringLiteral("/Contents"), info()}) {
        struct stat before {};

        ASSERT_EQ(::stat(QFile::encodeName(place).constData(), &before), 0);
        allowEverybodyToWrite(place);
        EXPECT_FALSE(find()) << place.toStdString();
        ASSERT_EQ(::chmod(QFile::encodeName(place).constData(), before.st_mode), 0);
    }
    EXPECT_TRUE(find());
}

TEST_F(OwnBundlesTest, BundleThatIsALink_IsRefused) {
    ASSERT_TRUE(QDir().rename(bundle(), folder.filePath(QStringLiteral("elsewhere"))));
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("elsewhere")), bundle()));
    EXPECT_FALSE(find());
}

TEST_F(OwnBundlesTest, BundleOfAnotherUser_IsRefused) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "skipped: only root can give a file away";
    }
    ASSERT_EQ(::chown(QFile::encodeName(info()).constData(), 65534, 65534), 0);
    EXPECT_FALSE(find());
}

TEST_F(OwnBundlesTest, BundleThatDoesNotDescribeItself_IsRefused) {
    putFile(info(), "nonsense");
    EXPECT_FALSE(find());
    putFile(info(), "<plist><dict><key>CFBundleVersion</key><string>1</string></dict></plist>");
    EXPECT_FALSE(find());
    QFile::remove(info());
    EXPECT_FALSE(find());
}

// What is loaded.

TEST(LoadedListTest, LoadedExtensions_StandInTheUsualLayout) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("loaded"));
    const LoadedList list(path);
    EXPECT_FALSE(
        list.write({{ExtensionBundles::cpuTune, QStringLiteral("com.TarnwickStudios.cputune"),
                     QStringLiteral("1.9")}}));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "    1    0 0                  0          0          "
                              "com.TarnwickStudios.cputune (1.9)\n");
    EXPECT_TRUE(file.permissions().testFlag(QFileDevice::ReadOther));
    EXPECT_FALSE(file.permissions().testFlag(QFileDevice::WriteOther));
}

TEST(LoadedListTest, NothingLoaded_LeavesNoFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("loaded"));
    EXPECT_FALSE(LoadedList(path).write({}));
    putFile(path, "old");
    EXPECT_FALSE(LoadedList(path).write({}));
    EXPECT_FALSE(QFile::exists(path));
}

TEST(LoadedListTest, FolderThatIsMissing_IsAnError) {
    EXPECT_TRUE(LoadedList(QStringLiteral("/no/such/folder/loaded")).write({Extension{}}));
}

// How many at once.

TEST(CallLimitsTest, OneCaller_CannotTakeTheTurnsOfOthers) {
    CallLimits limits;
    for (int call = 0; call < CallLimits::perCaller; ++call) {
        EXPECT_TRUE(limits.take(QStringLiteral(":1.1")));
    }
    EXPECT_FALSE(limits.take(QStringLiteral(":1.1")));
    EXPECT_TRUE(limits.take(QStringLiteral(":1.2")));
    limits.release(QStringLiteral(":1.1"));
    EXPECT_TRUE(limits.take(QStringLiteral(":1.1")));
}

TEST(CallLimitsTest, AllCallersTogether_AreLimitedToo) {
    CallLimits limits;
    int taken = 0;
    for (int caller = 0; caller < 2 * CallLimits::total; ++caller) {
        taken += limits.take(QStringLiteral(":1.%1").arg(caller)) ? 1 : 0;
    }
    EXPECT_EQ(taken, CallLimits::total);
    for (int caller = 0; caller < 2 * CallLimits::total; ++caller) {
        limits.release(QStringLiteral(":1.%1").arg(caller));
    }
    EXPECT_TRUE(limits.isEmpty());
}

// What the run-time configuration says.

class RunTimeConfigurationTest : public testing::Test {
  protected:
    [[nodiscard]] std::string read(uid_t userInFront = ::geteuid()) const {
        const std::optional<char> setting = RunTimeConfiguration(path(), [userInFront] {
                                                return std::set<uid_t>{userInFront};
                                            }).read();
        return setting ? std::string(1, *setting) : "nothing";
    }

    [[nodiscard]] QString path() const { return folder.filePath(QStringLiteral("RT.conf")); }

    [[nodiscard]] QByteArray encodedPath() const { return QFile::encodeName(path()); }

    QTemporaryDir folder;
};

TEST_F(RunTimeConfigurationTest, OneByte_IsTheSetting) {
    putFile(path(), "0");
    EXPECT_EQ(read(), "0");
    putFile(path(), "1");
    EXPECT_EQ(read(), "1");
    putFile(path(), "0123");
    EXPECT_EQ(read(), "0");
}

TEST_F(RunTimeConfigurationTest, AnythingElse_SaysNothing) {
    EXPECT_EQ(read(), "nothing");
    for (const char* text : {"", "2", " 0", "\n", "off"}) {
        putFile(path(), text);
        EXPECT_EQ(read(), "nothing") << text;
    }
}

TEST_F(RunTimeConfigurationTest, FileOfAUserWhoIsNotInFront_SaysNothing) {
    putFile(path(), "0");
    EXPECT_EQ(read(::geteuid() + 1), "nothing");
}

TEST_F(RunTimeConfigurationTest, Link_IsNotFollowed) {
    putFile(folder.filePath(QStringLiteral("target")), "0");
    ASSERT_TRUE(QFile::link(folder.filePath(QStringLiteral("target")), path()));
    EXPECT_EQ(read(), "nothing");
    QFile::remove(path());
    ASSERT_TRUE(QFile::link(QStringLiteral("/no/such/target"), path()));
    EXPECT_EQ(read(), "nothing");
}

TEST_F(RunTimeConfigurationTest, SecondNameOfAnotherFile_SaysNothing) {
    putFile(folder.filePath(QStringLiteral("target")), "0");
    const QByteArray target = QFile::encodeName(folder.filePath(QStringLiteral("target")));
    ASSERT_EQ(::link(target.constData(), encodedPath().constData()), 0);
    EXPECT_EQ(read(), "nothing");
}

TEST_F(RunTimeConfigurationTest, PipeFolderAndSocket_SayNothingAndAreNotWaitedFor) {
    ASSERT_EQ(::mkfifo(encodedPath().constData(), 0666), 0);
    EXPECT_EQ(read(), "nothing");
    QFile::remove(path());
    ASSERT_TRUE(QDir().mkdir(path()));
    EXPECT_EQ(read(), "nothing");
    ASSERT_TRUE(QDir().rmdir(path()));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, encodedPath().constData(), sizeof address.sun_path);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(read(), "nothing");
    ::close(socket);
}

TEST_F(RunTimeConfigurationTest, HugeFile_IsReadNoFurtherThanItsFirstByte) {
    putFile(path(), "1");
    ASSERT_EQ(::truncate(encodedPath().constData(), 1LL << 30), 0);
    EXPECT_EQ(read(), "1");
}

} // namespace
} // namespace quorvane::test
