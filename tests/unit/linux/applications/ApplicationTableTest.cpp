#include "platform/linux/applications/ApplicationTable.h"

#include "tests/support/QtPrinters.h"
#include "tests/support/RecordingLog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using testing::IsEmpty;
using testing::SizeIs;

namespace quorvane::test {
namespace {

class ApplicationTableTest : public testing::Test {
  protected:
    static void write(const QString& path, const QByteArray& text) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QTemporaryDir folder_;
    QString bundleFile_ = folder_.filePath(QStringLiteral("bundle.tsv"));
    QString userFile_ = folder_.filePath(QStringLiteral("user.tsv"));
    RecordingLog log_;
    ApplicationTable table_{bundleFile_, userFile_, log_};
};

TEST_F(ApplicationTableTest, NoFiles_KnowNothing) {
    EXPECT_EQ(table_.identifierOf("firefox"), QString());
    EXPECT_EQ(table_.identifierOf(""), QString());
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(ApplicationTableTest, Id_IsLookedUpInAnyCase) {
    write(bundleFile_, "# comment\n\norg.Example.App\tcom.example.App\n");
    EXPECT_EQ(table_.identifierOf("ORG.example.app"), QStringLiteral("com.example.App"));
    EXPECT_EQ(table_.identifierOf("org.example.app2"), QString());
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(ApplicationTableTest, Star_StandsForAnything) {
    write(bundleFile_, "app_*\tcom.example.App\n");
    EXPECT_EQ(table_.identifierOf("App_1f"), QStringLiteral("com.example.App"));
    EXPECT_EQ(table_.identifierOf("app"), QString());
}

TEST_F(ApplicationTableTest, FirstRowThatFits_Counts) {
    write(bundleFile_, "app-x\tcom.example.Special\napp-*\tcom.example.App\n");
    EXPECT_EQ(table_.identifierOf("app-x"), QStringLiteral("com.example.Special"));
    EXPECT_EQ(table_.identifierOf("app-y"), QStringLiteral("com.example.App"));
}

TEST_F(ApplicationTableTest, UsersRows_ComeFirst) {
    write(bundleFile_, "app\tcom.example.App\n");
    write(userFile_, "a*\torg.user.Own\r\n");
    EXPECT_EQ(table_.identifierOf("app"), QStringLiteral("org.user.Own"));
}

TEST_F(ApplicationTableTest, UsersRowsThatHaveChanged_CountFromTheNextQuestion) {
    write(userFile_, "app\tone\n");
    EXPECT_EQ(table_.identifierOf("app"), QStringLiteral("one"));
    write(userFile_, "app\tanother\n");
    EXPECT_EQ(table_.identifierOf("app"), QStringLiteral("another"));
    ASSERT_TRUE(QFile::remove(userFile_));
    EXPECT_EQ(table_.identifierOf("app"), QString());
}

TEST_F(ApplicationTableTest, RowsThatMakeNoSense_AreReportedOnceAndSkipped) {
    write(userFile_, "good\tcom.example.Good\n"
                     "no tab\n"
                     "\tcom.example.NoId\n"
                     "a\tb\tc\n"
                     "*\tcom.example.Everything\n"
                     "a*b\tcom.example.Middle\n"
                     "bad\xFF\tcom.example.Encoding\n"
                     "blank id\tcom.example.Blank\n"
                     "last\tcom.example.Last");
    for (int question = 0; question < 3; ++question) {
        EXPECT_EQ(table_.identifierOf("good"), QStringLiteral("com.example.Good"));
        EXPECT_EQ(table_.identifierOf("last"), QStringLiteral("com.example.Last"));
        EXPECT_EQ(table_.identifierOf("anything"), QString());
    }
    QStringList expected;
    for (int line = 2; line <= 8; ++line) {
        expected.append(QStringLiteral("%1, line %2: this is no row \"linux-id<TAB>identifier\"; "
                                       "it is skipped.")
                            .arg(userFile_)
                            .arg(line));
    }
    EXPECT_EQ(log_.lines(), expected);
}

TEST_F(ApplicationTableTest, FileThatIsNoTable_DoesNotFillTheLog) {
    write(userFile_, QByteArray(100000, 'x') + QByteArray("nonsense\n").repeated(5000));
    EXPECT_EQ(table_.identifierOf("app"), QString());
    ASSERT_THAT(log_.lines(), SizeIs(11));
    EXPECT_EQ(log_.lines().last(),
              QStringLiteral("%1: 4990 more such lines are skipped.").arg(userFile_));
}

TEST_F(ApplicationTableTest, FolderInPlaceOfTheFile_IsNoTable) {
    ASSERT_TRUE(QDir().mkpath(userFile_));
    write(bundleFile_, "app\tcom.example.App\n");
    EXPECT_EQ(table_.identifierOf("app"), QStringLiteral("com.example.App"));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

} // namespace
} // namespace quorvane::test
