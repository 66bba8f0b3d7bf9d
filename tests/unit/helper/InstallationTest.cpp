#include "apps/helper/Installation.h"

#include "platform/linux/common/HelperNames.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvane::test {
namespace {

/// The helper's files under a folder that stands for the machine's root.
class InstallationTest : public testing::Test {
  protected:
    void SetUp() override {
        QFile file(executable());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("program");
    }

    [[nodiscard]] QString executable() const { return folder.filePath(QStringLiteral("program")); }

    [[nodiscard]] QString root() const { return folder.filePath(QStringLiteral("root")); }

    [[nodiscard]] Installation installation() const { return {root(), executable()}; }

    [[nodiscard]] QStringList filesThere() const {
        QStringList all;
        QDirIterator files(root(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            all += files.next().mid(root().size());
        }
        all.sort();
        return all;
    }

    [[nodiscard]] QByteArray contents(const QString& path) const {
        QFile file(root() + path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] static QString installedExecutable() {
        return helpernames::installedFolder + QLatin1Char('/') + helpernames::label;
    }

    QTemporaryDir folder;
};

TEST_F(InstallationTest, Installing_WritesTheProgramAndSixFiles) {
    EXPECT_EQ(installation().install(), std::nullopt);
    EXPECT_EQ(filesThere().size(), 7);
    EXPECT_EQ(contents(installedExecutable()), "program");
    EXPECT_TRUE(QFileInfo(root() + installedExecutable()).isExecutable());
    for (const InstallationFile& each : installationFiles(helpernames::installedFolder)) {
        EXPECT_EQ(contents(each.path), each.contents) << each.path.toStdString();
        EXPECT_FALSE(each.contents.contains("@FOLDER@")) << each.path.toStdString();
        const auto permissions = QFile::permissions(root() + each.path);
        EXPECT_TRUE(permissions.testFlag(QFileDevice::ReadOther)) << each.path.toStdString();
        EXPECT_FALSE(permissions & (QFileDevice::WriteGroup | QFileDevice::WriteOther));
    }
}

TEST_F(InstallationTest, UnitAndBusFile_NameTheInstalledProgram) {
    int named = 0;
    for (const InstallationFile& each : installationFiles(helpernames::installedFolder)) {
        named += each.contents.contains(installedExecutable().toUtf8()) ? 1 : 0;
    }
    EXPECT_EQ(named, 2);
}

TEST_F(InstallationTest, InstallingAgain_ReplacesTheProgram) {
    EXPECT_EQ(installation().install(), std::nullopt);
    QFile file(executable());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("newer");
    file.close();
    EXPECT_EQ(installation().install(), std::nullopt);
    EXPECT_EQ(contents(installedExecutable()), "newer");
}

TEST_F(InstallationTest, Removing_LeavesNeitherFilesNorFoldersOfItsOwn) {
    EXPECT_EQ(installation().install(), std::nullopt);
    EXPECT_EQ(installation().removeService(), std::nullopt);
    EXPECT_EQ(filesThere().size(), 6);
    EXPECT_EQ(installation().removeFiles(), std::nullopt);
    EXPECT_EQ(filesThere(), QStringList());
    EXPECT_FALSE(QFile::exists(root() + helpernames::installedFolder));
}

TEST_F(InstallationTest, RemovingWhatIsNotThere_Succeeds) {
    EXPECT_EQ(installation().removeService(), std::nullopt);
    EXPECT_EQ(installation().removeFiles(), std::nullopt);
}

TEST_F(InstallationTest, FileOfSomebodyElseInTheFolder_IsKept) {
    EXPECT_EQ(installation().install(), std::nullopt);
    QFile other(root() + helpernames::installedFolder + QStringLiteral("/notes"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    EXPECT_EQ(installation().removeFiles(), std::nullopt);
    EXPECT_TRUE(other.exists());
}

TEST_F(InstallationTest, PackageOfTheDistribution_IsNotTouched) {
    const QString packaged = root() + helpernames::packagedFolder;
    ASSERT_TRUE(QDir().mkpath(packaged));
    QFile file(packaged + QLatin1Char('/') + helpernames::label);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const std::optional<QString> error = installation().install();
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->contains(QLatin1String("package"))) << error->toStdString();
    EXPECT_EQ(filesThere().size(), 1);
}

TEST_F(InstallationTest, PlaceThatCannotBeWritten_LeavesNothingAndIsNamed) {
    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/etc")));
    QFile inTheWay(root() + QStringLiteral("/etc/dbus-1"));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    const std::optional<QString> error = installation().install();
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->startsWith(QLatin1String("/etc/dbus-1/system.d/"))) << error->toStdString();
    EXPECT_EQ(filesThere(), QStringList(QStringLiteral("/etc/dbus-1")));
}

TEST_F(InstallationTest, ProgramThatCannotBeRead_IsAnError) {
    EXPECT_TRUE(Installation(root(), QStringLiteral("/no/such/program")).install());
    EXPECT_EQ(filesThere(), QStringList());
}

} // namespace
} // namespace quorvane::test
