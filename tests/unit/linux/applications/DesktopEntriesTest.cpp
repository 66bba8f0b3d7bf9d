#include "platform/linux/applications/DesktopEntries.h"

#include "tests/support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace quorvane::test {
namespace {

class DesktopEntriesTest : public testing::Test {
  protected:
    [[nodiscard]] QString path(const char* name) const {
        return folder_.filePath(QLatin1String(name));
    }

    void write(const char* name, const QByteArray& text) const {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    void writeEntry(const char* name, const QByteArray& lines) const {
        write(name, "[Desktop Entry]\nType=Application\n" + lines);
    }

    [[nodiscard]] QByteArray nameOf(const QByteArray& id) {
        const DesktopEntry* const entry = entries_.withId(id);
        return entry == nullptr ? QByteArray("none") : entry->name;
    }

    QTemporaryDir folder_;
    DesktopEntries entries_{{path("first"), path("second"), path("later/applications")}};
};

TEST_F(DesktopEntriesTest, NoFolder_NoEntries) {
    EXPECT_EQ(entries_.count(), 0U);
    EXPECT_EQ(entries_.withId("sample"), nullptr);
}

TEST_F(DesktopEntriesTest, EarlierFolder_HidesTheLater) {
    writeEntry("first/sample.desktop", "Name=First\n");
    writeEntry("second/sample.desktop", "Name=Second\n");
    writeEntry("second/other.desktop", "Name=Other\n");
    EXPECT_EQ(nameOf("sample"), "First");
    EXPECT_EQ(nameOf("OTHER"), "Other");
    EXPECT_EQ(entries_.count(), 2U);
}

TEST_F(DesktopEntriesTest, DeletedByTheUser_IsNotInstalled) {
    writeEntry("first/sample.desktop", "Hidden=true\n");
    writeEntry("second/sample.desktop", "Name=Second\n");
    EXPECT_EQ(nameOf("sample"), "none");
}

TEST_F(DesktopEntriesTest, EntryInAFolder_HasTheFolderInItsId) {
    writeEntry("first/kde/deep/sample.desktop", "Name=Deep\n");
    EXPECT_EQ(nameOf("kde-deep-sample"), "Deep");
}

TEST_F(DesktopEntriesTest, Questions_AreAnsweredInAnyCase) {
    writeEntry("first/a.desktop", "Exec=/usr/bin/tool --a\nStartupWMClass=Tool-A\n");
    writeEntry("first/tool.desktop", "Exec=/usr/bin/tool\n");
    ASSERT_NE(entries_.withStartupWmClass("tool-a"), nullptr);
    EXPECT_EQ(entries_.withStartupWmClass("tool-a")->id, "a");
    ASSERT_NE(entries_.withProgram("Tool"), nullptr);
    EXPECT_EQ(entries_.withProgram("Tool")->id, "tool");
    EXPECT_EQ(entries_.withStartupWmClass(""), nullptr);
    EXPECT_EQ(entries_.withProgram(""), nullptr);
}

TEST_F(DesktopEntriesTest, HostileFiles_AreSkipped) {
    write("first/empty.desktop", "");
    write("first/text.desktop", "no entry at all");
    write("first/wrong.desktop", "[Desktop Entry]\nName=\xFF\xFE\xFA\nExec=\xFF\xFA\n");
    write("first/long.desktop", "[Desktop Entry]\nName=" + QByteArray(1 << 20, 'y') + "\n");
    write("first/huge.desktop",
          "[Desktop Entry]\nName=Huge\n" + QByteArray(8 << 20, '\n') + "Name=Beyond\n");
    ASSERT_EQ(::mkfifo(path("first/pipe.desktop").toLocal8Bit().constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path("first/ring.desktop"), path("first/ring.desktop")));
    ASSERT_TRUE(QFile::link(path("nowhere"), path("first/broken.desktop")));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), path("first/zero.desktop")));
    ASSERT_TRUE(QDir().mkpath(path("first/folder.desktop")));
    writeEntry("first/good.desktop", "Name=Good\n");

    EXPECT_EQ(nameOf("good"), "Good");
    EXPECT_EQ(nameOf("wrong"), "");
    EXPECT_EQ(nameOf("long"), "");
    EXPECT_EQ(nameOf("huge"), "Huge");
    EXPECT_EQ(entries_.count(), 4U);
}

TEST_F(DesktopEntriesTest, LoopsOfFolders_AreReadOnce) {
    writeEntry("first/good.desktop", "Name=Good\n");
    for (const char* name : {"first/a", "first/b", "first/c", "first/d"}) {
        ASSERT_TRUE(QFile::link(path("first"), path(name)));
    }
    EXPECT_EQ(entries_.count(), 1U);
}

TEST_F(DesktopEntriesTest, InstalledLater_IsFoundByTheNextQuestion) {
    ASSERT_TRUE(QDir().mkpath(path("first")));
    EXPECT_EQ(nameOf("sample"), "none");
    writeEntry("first/sample.desktop", "Name=Sample\n");
    EXPECT_EQ(nameOf("sample"), "Sample");
    writeEntry("first/sample.desktop", "Name=Renamed\n");
    EXPECT_EQ(nameOf("sample"), "Renamed");
    ASSERT_TRUE(QFile::remove(path("first/sample.desktop")));
    EXPECT_EQ(nameOf("sample"), "none");
}

TEST_F(DesktopEntriesTest, FolderThatComesLater_IsReadThen) {
    EXPECT_EQ(entries_.count(), 0U);
    writeEntry("later/applications/sub/sample.desktop", "Name=Sample\n");
    EXPECT_EQ(nameOf("sub-sample"), "Sample");
    writeEntry("later/applications/sub/sample.desktop", "Name=Renamed\n");
    EXPECT_EQ(nameOf("sub-sample"), "Renamed");
}

} // namespace
} // namespace quorvane::test
