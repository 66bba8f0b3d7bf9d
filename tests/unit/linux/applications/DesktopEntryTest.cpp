#include "platform/linux/applications/DesktopEntry.h"

#include "platform/linux/applications/LaunchCommand.h"
#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

namespace quorvane::test {
namespace {

DesktopEntry entryOf(const QByteArray& lines, const QList<QByteArray>& languages = {}) {
    return DesktopEntry::parse("sample", "[Desktop Entry]\n" + lines, languages)
        .value_or(DesktopEntry{});
}

TEST(DesktopEntryTest, OrdinaryEntry_KeepsWhatTellsTheApplication) {
    const DesktopEntry entry = entryOf("Type=Application\nName=Sample\nExec=/usr/bin/sample %U\n"
                                       "StartupWMClass=Sample-window\nIcon=sample\n");
    EXPECT_EQ(entry.id, "sample");
    EXPECT_EQ(entry.name, "Sample");
    EXPECT_EQ(entry.program, "sample");
    EXPECT_EQ(entry.startupWmClass, "Sample-window");
    EXPECT_FALSE(entry.isTerminal);
    EXPECT_FALSE(entry.isDeleted);
}

TEST(DesktopEntryTest, OtherGroups_DoNotCount) {
    const auto entry = DesktopEntry::parse("sample",
                                           "[Before]\nName=Before\n"
                                           "[Desktop Entry]\nName=Sample\nExec=sample\n"
                                           "[Desktop Action new]\nName=New\nExec=other\n",
                                           {});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "Sample");
    EXPECT_EQ(entry->program, "sample");
}

TEST(DesktopEntryTest, NoGroup_IsNoEntry) {
    EXPECT_FALSE(DesktopEntry::parse("sample", "Name=Sample\nExec=sample\n", {}));
    EXPECT_FALSE(DesktopEntry::parse("sample", "", {}));
}

TEST(DesktopEntryTest, NoApplication_IsNoEntry) {
    EXPECT_FALSE(DesktopEntry::parse("sample", "[Desktop Entry]\nType=Link\nURL=https://x\n", {}));
}

TEST(DesktopEntryTest, Name_IsTheBestOfTheUsersLanguages) {
    const QByteArray lines = "Name[de]=Deutsch\nName=English\nName[de_AT]=Austria\nName[fr]=Oui\n";
    EXPECT_EQ(entryOf(lines, {"de_AT", "de"}).name, "Austria");
    EXPECT_EQ(entryOf(lines, {"de_CH", "de"}).name, "Deutsch");
    EXPECT_EQ(entryOf(lines, {"it"}).name, "English");
    EXPECT_EQ(entryOf(lines).name, "English");
}

TEST(DesktopEntryTest, NameInAWrongEncoding_IsNotTaken) {
    const DesktopEntry entry = entryOf("Name[de]=\xE4\xF6\xFC\nName=Sample\nExec=sample\n", {"de"});
    EXPECT_EQ(entry.name, "Sample");
    EXPECT_EQ(entry.program, "sample");
}

TEST(DesktopEntryTest, Utf16_IsNoEntry) {
    QByteArray text;
    for (const char character : QByteArray("[Desktop Entry]\nName=Sample\n")) {
        text.append(character).append('\0');
    }
    EXPECT_FALSE(DesktopEntry::parse("sample", "\xFF\xFE" + text, {}));
}

TEST(DesktopEntryTest, ByteOrderMarkAndCarriageReturns_DoNotMatter) {
    const auto entry = DesktopEntry::parse(
        "sample", "\xEF\xBB\xBF[Desktop Entry]\r\nName=Sample\r\nExec=sample\r\n", {});
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "Sample");
    EXPECT_EQ(entry->program, "sample");
}

TEST(DesktopEntryTest, LinesOfAMegabyte_AreOnlyNotUsed) {
    const QByteArray megabyte(1 << 20, 'x');
    const DesktopEntry entry =
        entryOf("Name=" + megabyte + "\nComment=" + megabyte + "\nStartupWMClass=" + megabyte +
                "\nCategories=" + megabyte + "\n" + megabyte + "\nExec=sample " + megabyte + "\n");
    EXPECT_EQ(entry.name, "");
    EXPECT_EQ(entry.startupWmClass, "");
    EXPECT_EQ(entry.program, "sample");
}

TEST(DesktopEntryTest, NoExec_TheRestCounts) {
    const DesktopEntry entry = entryOf("Name=Sample\nDBusActivatable=true\n");
    EXPECT_EQ(entry.id, "sample");
    EXPECT_EQ(entry.program, "");
}

TEST(DesktopEntryTest, EscapesOfAName_AreResolved) {
    EXPECT_EQ(entryOf("Name=One\\sTwo\\\\Three\\nFour\\").name, "One Two\\Three Four\\");
}

TEST(DesktopEntryTest, Hidden_StandsForNotInstalled) {
    EXPECT_TRUE(entryOf("Hidden=true\n").isDeleted);
    EXPECT_FALSE(entryOf("NoDisplay=true\n").isDeleted);
}

TEST(DesktopEntryTest, TerminalEmulator_IsKnownByItsCategory) {
    EXPECT_TRUE(entryOf("Categories=GTK;System;TerminalEmulator;\n").isTerminal);
    EXPECT_FALSE(entryOf("Categories=System;Monitor;\nTerminal=true\n").isTerminal);
}

TEST(LaunchCommandTest, Program_IsFoundBehindWhatComesBeforeIt) {
    EXPECT_EQ(programOfLaunchCommand("sample"), "sample");
    EXPECT_EQ(programOfLaunchCommand("/opt/x/sample --new %U"), "sample");
    EXPECT_EQ(programOfLaunchCommand("\"/opt/with blank/sample\" %f"), "sample");
    EXPECT_EQ(programOfLaunchCommand("env sample"), "sample");
    EXPECT_EQ(programOfLaunchCommand("/usr/bin/env -i -u HOME A=b C_1=\"d e\" /bin/sample %u"),
              "sample");
    EXPECT_EQ(programOfLaunchCommand("GDK_BACKEND=x11 sample"), "sample");
    EXPECT_EQ(programOfLaunchCommand("env BAMF_DESKTOP_FILE_HINT=/x.desktop /snap/bin/firefox %u"),
              "firefox");
    EXPECT_EQ(programOfLaunchCommand("/usr/bin/flatpak run --branch=stable --arch=x86_64 "
                                     "--command=/app/bin/brave com.brave.Browser @@u %U @@"),
              "brave");
}

TEST(LaunchCommandTest, WhatTellsNothing_HasNoProgram) {
    for (const char* line :
         {"", "   ", "env", "env A=b", "env -u", "\"", "flatpak run org.example.Sample",
          "sh -c \"exec sample\"", "/usr/bin/python3 /usr/lib/sample.py", "python3.11 x",
          "java -jar x"}) {
        EXPECT_EQ(programOfLaunchCommand(line), "") << line;
    }
    EXPECT_EQ(programOfLaunchCommand("pythonista"), "pythonista");
}

} // namespace
} // namespace quorvane::test
