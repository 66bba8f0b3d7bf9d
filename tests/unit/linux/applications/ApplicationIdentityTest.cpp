#include "platform/linux/applications/ApplicationIdentity.h"

#include "platform/linux/applications/ApplicationTable.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RecordingLog.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using testing::IsEmpty;

namespace quorvane::test {
namespace {

class ApplicationIdentityTest : public testing::Test {
  protected:
    void install(const QString& id, const QByteArray& lines) const {
        QFile file(folder_.filePath(id + QStringLiteral(".desktop")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\n" + lines);
    }

    [[nodiscard]] static ProcessFacts inUnit(const char* unit) {
        ProcessFacts process;
        process.controlGroups = QByteArray("0::/app.slice/") + unit + "\n";
        return process;
    }

    [[nodiscard]] static ProcessFacts running(const char* executable, const char* first = "",
                                              const char* second = "") {
        return {"0::/session-2.scope\n", executable, first, second};
    }

    [[nodiscard]] QString find(const ProcessFacts& process, const WindowNames& window = {}) {
        return identity_.find(process, window).bundleIdentifier;
    }

    QTemporaryDir folder_;
    RecordingLog log_;
    DesktopEntries entries_{{folder_.path()}};
    ApplicationTable table_{
        QStringLiteral(QUORVANE_SOURCE_DIR "/resources/ApplicationIdentifiers.tsv"), QString(),
        log_};
    ApplicationIdentity identity_{entries_, table_};
};

TEST_F(ApplicationIdentityTest, NothingThatTells_NoIdentifier) {
    EXPECT_EQ(find({}), QString());
    EXPECT_EQ(find(running("/usr/bin/unheard-of"), {"", "unheard", "Of"}), QString());
    EXPECT_EQ(identity_.find({}, {"", "unheard", "Of"}).localizedName, QStringLiteral("Of"));
}

TEST_F(ApplicationIdentityTest, Unit_ComesBeforeWindowAndProgram) {
    install(QStringLiteral("org.example.Unit"), "Name=Unit\n");
    install(QStringLiteral("window"), "Name=Window\n");
    const auto found =
        identity_.find(inUnit("app-gnome-org.example.Unit-5.scope"), {"", "window", "Window"});
    EXPECT_EQ(found.bundleIdentifier, QStringLiteral("org.example.Unit"));
    EXPECT_EQ(found.localizedName, QStringLiteral("Unit"));
}

TEST_F(ApplicationIdentityTest, Window_ComesBeforeProgram) {
    install(QStringLiteral("window"), "Name=Window\n");
    install(QStringLiteral("program"), "Name=Program\nExec=tool\n");
    EXPECT_EQ(find(running("/usr/bin/tool"), {"", "window", "Window"}), QStringLiteral("window"));
    EXPECT_EQ(find(running("/usr/bin/tool"), {"", "other", "Other"}), QStringLiteral("program"));
}

TEST_F(ApplicationIdentityTest, UnitThatNobodyKnows_CountsWhenNothingElseTells) {
    install(QStringLiteral("window"), "Name=Window\n");
    const ProcessFacts process = inUnit("app-org.example.Gone@autostart.service");
    EXPECT_EQ(find(process, {"", "window", "Window"}), QStringLiteral("window"));
    EXPECT_EQ(find(process), QStringLiteral("org.example.Gone"));
}

TEST_F(ApplicationIdentityTest, ProgramFromATerminal_IsNotTheTerminal) {
    install(QStringLiteral("org.example.Console"),
            "Name=Console\nExec=console\nCategories=System;TerminalEmulator;\n");
    ProcessFacts process = inUnit("app-org.example.Console-12.scope");
    process.executable = "/usr/bin/console";
    EXPECT_EQ(find(process, {"", "x", "X"}), QStringLiteral("org.example.Console"));
    process.executable = "/usr/lib/firefox/firefox";
    EXPECT_EQ(find(process, {"", "Navigator", "firefox"}), QStringLiteral("org.mozilla.Firefox"));
    process.executable = "/usr/bin/gears";
    EXPECT_EQ(find(process, {"", "gears", "Gears"}), QString());
}

TEST_F(ApplicationIdentityTest, ApplicationIdOfTheWindow_IsTheEntrys) {
    install(QStringLiteral("org.example.App"), "Name=App\n");
    EXPECT_EQ(find({}, {"org.example.app", "x", "X"}), QStringLiteral("org.example.App"));
}

TEST_F(ApplicationIdentityTest, StartupClass_IsComparedInAnyCaseAndBeforeTheId) {
    install(QStringLiteral("one"), "Name=One\nStartupWMClass=two\n");
    install(QStringLiteral("two"), "Name=Two\n");
    EXPECT_EQ(find({}, {"", "x", "TWO"}), QStringLiteral("one"));
}

TEST_F(ApplicationIdentityTest, InstanceWithAProfile_IsStillTheBrowser) {
    EXPECT_EQ(find({}, {"", "chromium (/tmp/profile)", "Renamed"}),
              QStringLiteral("com.google.Chrome"));
}

TEST_F(ApplicationIdentityTest, Interpreter_StandsForWhatItRuns) {
    install(QStringLiteral("interpreter"), "Name=Interpreter\nExec=/usr/bin/python3.11\n");
    install(QStringLiteral("tool"), "Name=Tool\nExec=tool\n");
    EXPECT_EQ(find(running("/usr/bin/python3.11", "python3", "/usr/bin/tool")),
              QStringLiteral("tool"));
    EXPECT_EQ(find(running("/usr/bin/python3.11", "python3", "-m")), QString());
}

TEST_F(ApplicationIdentityTest, NameInTheCommandLine_TellsWhereTheProgramDoesNot) {
    install(QStringLiteral("tool"), "Name=Tool\nExec=tool %U\n");
    EXPECT_EQ(find(running("/usr/lib/tool/tool-real", "/usr/bin/tool")), QStringLiteral("tool"));
}

TEST_F(ApplicationIdentityTest, WebContentOfGnomeWeb_HasAnIdentifierOfItsOwn) {
    EXPECT_EQ(find(running("/usr/lib/x86_64-linux-gnu/webkit2gtk-4.1/WebKitWebProcess")),
              QStringLiteral("com.apple.WebKit.WebContent"));
}

TEST_F(ApplicationIdentityTest, TableOfTheBundle_HasNoRowThatMakesNoSense) {
    EXPECT_EQ(table_.identifierOf("chrome-remote-desktop"),
              QStringLiteral("chrome-remote-desktop"));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

/// What the packagings of the browsers really call themselves, one a row.
struct Packaging {
    QString browser;
    QString desktopId;
    QString startupClass;
    QString windowClass; ///< "instance,class"
    QString program;
};

QString withoutRemark(const QString& text) {
    return text.section(QLatin1String(" ("), 0, 0).section(QLatin1Char(';'), 0, 0).trimmed();
}

QList<Packaging> packagings() {
    QFile file(QStringLiteral(QUORVANE_SOURCE_DIR "/tests/fixtures/browsers.tsv"));
    QList<Packaging> rows;
    if (!file.open(QIODevice::ReadOnly)) {
        return rows;
    }
    const QStringList lines =
        QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines.mid(1)) {
        const QStringList columns = line.split(QLatin1Char('\t'));
        // "brave-browser.desktop (deb); com.brave.Browser.desktop (flatpak)" are two.
        for (const QString& id : columns.value(2).split(QLatin1Char(';'))) {
            rows.append({columns.value(0), withoutRemark(id).remove(QStringLiteral(".desktop")),
                         withoutRemark(columns.value(3)), withoutRemark(columns.value(4)),
                         columns.value(6).section(QLatin1Char(' '), 0, 0)});
        }
    }
    return rows;
}

QString expectedFor(const Packaging& row) {
    if (row.browser.startsWith(QLatin1String("Firefox"))) {
        return QStringLiteral("org.mozilla.Firefox");
    }
    if (row.browser.startsWith(QLatin1String("GNOME Web"))) {
        return QStringLiteral("com.apple.Safari");
    }
    if (row.browser == QLatin1String("Opera")) {
        return QStringLiteral("com.operasoftware.Opera");
    }
    return row.browser == QLatin1String("Falkon") ? QStringLiteral("org.kde.falkon")
                                                  : QStringLiteral("com.google.Chrome");
}

TEST_F(ApplicationIdentityTest, EveryPackagingOfABrowser_IsKnownByItsUnit) {
    ASSERT_GE(packagings().size(), 24);
    for (const Packaging& row : packagings()) {
        QByteArray id = row.desktopId.toUtf8();
        EXPECT_EQ(find(inUnit("app-gnome-" + id.replace('-', "\\x2d") + "-77.scope")),
                  expectedFor(row))
            << row.desktopId.toStdString();
    }
}

TEST_F(ApplicationIdentityTest, EveryPackagingOfABrowser_IsKnownByItsInstalledEntry) {
    for (const Packaging& row : packagings()) {
        if (row.startupClass.isEmpty()) {
            continue; // the entry has none
        }
        install(row.desktopId, "Name=Browser\nStartupWMClass=" + row.startupClass.toUtf8() + "\n");
        const QByteArray windowClass = row.startupClass.toUtf8();
        EXPECT_EQ(find({}, {"", "x", windowClass}), expectedFor(row))
            << row.desktopId.toStdString();
        ASSERT_TRUE(QFile::remove(folder_.filePath(row.desktopId + QStringLiteral(".desktop"))));
    }
}

TEST_F(ApplicationIdentityTest, EveryPackagingOfABrowser_IsKnownByItsWindow) {
    for (const Packaging& row : packagings()) {
        const bool isTold = row.windowClass.contains(QLatin1Char(','));
        if (!isTold || row.browser == QLatin1String("Falkon")) {
            continue; // known only by its installed entry
        }
        const WindowNames window{{},
                                 row.windowClass.section(QLatin1Char(','), 0, 0).toUtf8(),
                                 row.windowClass.section(QLatin1Char(','), 1).toUtf8()};
        EXPECT_EQ(find({}, window), expectedFor(row)) << row.windowClass.toStdString();
    }
}

TEST_F(ApplicationIdentityTest, EveryPackagingOfABrowser_IsKnownByItsProgram) {
    for (const Packaging& row : packagings()) {
        if (row.browser == QLatin1String("Falkon")) {
            continue; // known only by its installed entry
        }
        // The kernel's own name of a process has fifteen letters.
        const QString program = row.program == QLatin1String("chromium-browse")
                                    ? QStringLiteral("chromium-browser")
                                    : row.program;
        const QByteArray path = "/opt/browser/" + program.toUtf8();
        EXPECT_EQ(find(running(path.constData())), expectedFor(row)) << program.toStdString();
    }
}

} // namespace
} // namespace quorvane::test
