#include "platform/linux/settings/LinuxSettings.h"

#include "tests/integration/settings/SettingsTest.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QUrl>

namespace quorvane::test {

/// What is stored, and how.
class LinuxSettingsTest : public SettingsTest {};

TEST_F(LinuxSettingsTest, SameName_IsTheSameObject) {
    LinuxSettings settings(log_, folder());
    EXPECT_EQ(&settings.domain(QStringLiteral("a")), &settings.domain(QStringLiteral("a")));
    EXPECT_NE(&settings.domain(QStringLiteral("a")), &settings.domain(QStringLiteral("b")));
}

TEST_F(LinuxSettingsTest, Default_IsTheUsersConfigFolder) {
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder()));
    LinuxSettings settings(log_);
    EXPECT_TRUE(settings.domain(QStringLiteral("com.example.app")).write(QStringLiteral("a"), 1));
    qunsetenv("XDG_CONFIG_HOME");
    EXPECT_TRUE(QFile::exists(folder() + QLatin1String("/com.example.app.conf")));
}

TEST_F(LinuxSettingsTest, ReadingOnly_CreatesNothing) {
    EXPECT_FALSE(domain().value(QStringLiteral("a")).isValid());
    EXPECT_TRUE(domain().synchronize());
    EXPECT_FALSE(QFile::exists(folder()));
    EXPECT_TRUE(log_.lines.isEmpty());
}

TEST_F(LinuxSettingsTest, FirstWrite_CreatesFolderAndFileForTheUserAlone) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    EXPECT_EQ(mode(folder()), 0700U);
    EXPECT_EQ(mode(file()), 0600U);
}

TEST_F(LinuxSettingsTest, WrittenFile_IsPlainIni) {
    EXPECT_TRUE(domain().write(QStringLiteral("a.bool"), true));
    EXPECT_TRUE(domain().write(QStringLiteral("b.bool"), false));
    EXPECT_TRUE(domain().write(QStringLiteral("c.int"), 70));
    EXPECT_TRUE(domain().write(QStringLiteral("d.long"), Q_INT64_C(-9007199254740993)));
    EXPECT_TRUE(domain().write(QStringLiteral("e.float"), 0.7F));
    EXPECT_TRUE(domain().write(QStringLiteral("f.double"), 0.1 + 0.2));
    EXPECT_TRUE(domain().write(QStringLiteral("g.small"), 0.00001));
    EXPECT_TRUE(domain().write(QStringLiteral("h.url"),
                               QUrl(QStringLiteral("https://example.com/a b?c=%20&d=1"))));
    EXPECT_TRUE(domain().write(QStringLiteral("i.string"), QStringLiteral("Grüße, \"du\"; 1=1")));
    EXPECT_EQ(read(), QByteArray("[General]\n"
                                 "a.bool=true\n"
                                 "b.bool=false\n"
                                 "c.int=70\n"
                                 "d.long=-9007199254740993\n"
                                 "e.float=0.7\n"
                                 "f.double=0.30000000000000004\n"
                                 "g.small=0.00001\n"
                                 "h.url=\"https://example.com/a%20b?c=%20&d=1\"\n"
                                 "i.string=\"Gr\xC3\xBC\xC3\x9F"
                                 "e, \\\"du\\\"; 1=1\"\n"));
}

TEST_F(LinuxSettingsTest, Values_AreText) {
    EXPECT_TRUE(domain().write(QStringLiteral("bool"), true));
    EXPECT_TRUE(domain().write(QStringLiteral("float"), 0.7F));
    EXPECT_EQ(domain().value(QStringLiteral("bool")), QVariant(QStringLiteral("true")));
    EXPECT_EQ(domain().value(QStringLiteral("float")), QVariant(QStringLiteral("0.7")));
    EXPECT_EQ(domain().value(QStringLiteral("float")).toFloat(), 0.7F);
}

TEST_F(LinuxSettingsTest, FloatsOfEverySize_ComeBackExactly) {
    for (const float number : {0.1F, 1.0F / 3, 16777216.0F, 1e-45F, -3.4028235e38F, 0.0F}) {
        ASSERT_TRUE(domain().write(QStringLiteral("number"), number));
        EXPECT_EQ(domain().value(QStringLiteral("number")).toFloat(), number);
        EXPECT_FALSE(read().contains("e+") || read().contains("e-")) << read().constData();
    }
}

TEST_F(LinuxSettingsTest, StringsOfEveryKind_ComeBackAsTheyWere) {
    const QStringList texts = {QString::fromLatin1(""),
                               QStringLiteral(" spaces at both ends "),
                               QStringLiteral("a, b,c"),
                               QStringLiteral("\"quoted\" \\ back"),
                               QStringLiteral("line\nline\r\n\ttab\x01\x02"
                                              "f"),
                               QStringLiteral("; no comment # [no section] a=b"),
                               QStringLiteral("@Variant(no)"),
                               QStringLiteral("@@"),
                               QStringLiteral("%20 100%"),
                               QStringLiteral("日本語 🔋 é"),
                               QString(QChar(0)) + QLatin1Char('1'),
                               QStringLiteral("[General]")};
    for (qsizetype i = 0; i < texts.size(); ++i) {
        ASSERT_TRUE(domain().write(QStringLiteral("text.%1").arg(i), texts[i]));
    }
    for (qsizetype i = 0; i < texts.size(); ++i) {
        const QVariant expected(texts[i]);
        EXPECT_EQ(domain().value(QStringLiteral("text.%1").arg(i)), expected) << i;
        EXPECT_EQ(elsewhere().value(QStringLiteral("text.%1").arg(i)), expected) << i;
    }
    EXPECT_TRUE(read().isValidUtf8());
    EXPECT_FALSE(read().contains('\0'));
    EXPECT_TRUE(log_.lines.isEmpty());
}

TEST_F(LinuxSettingsTest, WrittenFile_IsUnderstoodByQSettings) {
    EXPECT_TRUE(domain().write(QStringLiteral("enabled"), true));
    EXPECT_TRUE(domain().write(QStringLiteral("Größe/innen"), 3));
    QSettings settings(file(), QSettings::IniFormat);
    EXPECT_TRUE(settings.value(QStringLiteral("enabled")).toBool());
    EXPECT_EQ(settings.value(QStringLiteral("Größe/innen")).toInt(), 3);
}

TEST_F(LinuxSettingsTest, FileOfQSettings_IsUnderstood) {
    {
        QSettings settings(file(), QSettings::IniFormat);
        settings.setValue(QStringLiteral("enabled"), true);
        settings.setValue(QStringLiteral("level"), 0.5);
        settings.setValue(QStringLiteral("text"), QStringLiteral("a, ü"));
    }
    EXPECT_EQ(domain().value(QStringLiteral("enabled")), QVariant(QStringLiteral("true")));
    EXPECT_EQ(domain().value(QStringLiteral("level")), QVariant(QStringLiteral("0.5")));
    EXPECT_EQ(domain().value(QStringLiteral("text")), QVariant(QStringLiteral("a, ü")));
}

TEST_F(LinuxSettingsTest, HandWrittenCommas_AreOneText) {
    writeInPlace("[General]\ntext=Hello, world\nnumber=0,7\n");
    EXPECT_EQ(domain().value(QStringLiteral("text")), QVariant(QStringLiteral("Hello,world")));
    EXPECT_EQ(domain().value(QStringLiteral("number")), QVariant(QStringLiteral("0,7")));
}

TEST_F(LinuxSettingsTest, HandWrittenFileWithoutSectionOrLastLineEnd_IsUnderstood) {
    writeInPlace("\n; mine\nenabled = true\nlevel=7");
    EXPECT_EQ(domain().value(QStringLiteral("enabled")), QVariant(QStringLiteral("true")));
    EXPECT_EQ(domain().value(QStringLiteral("level")), QVariant(QStringLiteral("7")));
}

TEST_F(LinuxSettingsTest, Write_KeepsOtherKeysAsTheyAre) {
    writeInPlace("[General]\nlist=a, b\nnothing=@Invalid()\nsize=@Size(1 2)\n\n[Window]\nx=1\n");
    EXPECT_FALSE(domain().value(QStringLiteral("nothing")).isValid());
    EXPECT_TRUE(domain().write(QStringLiteral("mine"), 1));
    EXPECT_EQ(read(), QByteArray("[General]\nlist=a, b\nmine=1\nnothing=@Invalid()\n"
                                 "size=@Size(1 2)\n\n[Window]\nx=1\n"));
}

TEST_F(LinuxSettingsTest, InvalidValue_RemovesTheKey) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    EXPECT_TRUE(domain().write(QStringLiteral("b"), 2));
    EXPECT_TRUE(domain().write(QStringLiteral("a"), QVariant()));
    EXPECT_FALSE(domain().value(QStringLiteral("a")).isValid());
    EXPECT_EQ(read(), QByteArray("[General]\nb=2\n"));
    const QList<QStringList> expected{
        {QStringLiteral("a")}, {QStringLiteral("b")}, {QStringLiteral("a")}};
    EXPECT_EQ(announced(), expected);
}

TEST_F(LinuxSettingsTest, RemovingTheOnlyKey_IsBelievedAtOnce) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    EXPECT_TRUE(domain().write(QStringLiteral("a"), QVariant()));
    EXPECT_FALSE(domain().value(QStringLiteral("a")).isValid());
    EXPECT_EQ(announced().size(), 2);
    EXPECT_TRUE(log_.lines.isEmpty());
}

TEST_F(LinuxSettingsTest, RemovingAKey_KeepsTheKeysBelowIt) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    EXPECT_TRUE(domain().write(QStringLiteral("a/b"), 2));
    EXPECT_TRUE(domain().write(QStringLiteral("a"), QVariant()));
    EXPECT_FALSE(domain().value(QStringLiteral("a")).isValid());
    EXPECT_EQ(domain().value(QStringLiteral("a/b")), QVariant(QStringLiteral("2")));
}

TEST_F(LinuxSettingsTest, ValueWithoutText_IsRefused) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    EXPECT_FALSE(domain().write(QStringLiteral("a"), QVariantMap{{QStringLiteral("x"), 1}}));
    EXPECT_EQ(domain().value(QStringLiteral("a")), QVariant(QStringLiteral("1")));
    ASSERT_EQ(log_.lines.size(), 1);
    EXPECT_TRUE(log_.lines[0].contains(QLatin1String("QVariantMap")));
}

TEST_F(LinuxSettingsTest, OwnWrite_IsAnnouncedBeforeItReturns) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    const QList<QStringList> expected{{QStringLiteral("a")}};
    EXPECT_EQ(announced(), expected);
    run(std::chrono::milliseconds(300));
    EXPECT_EQ(announced(), expected);
}

TEST_F(LinuxSettingsTest, WriteFromAnAnnouncement_Works) {
    QObject::connect(&domain(), &SettingsDomain::changed, [this](const QStringList& keys) {
        if (keys.contains(QStringLiteral("a"))) {
            EXPECT_TRUE(domain().write(QStringLiteral("b"), 2));
        }
    });
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    EXPECT_EQ(elsewhere().value(QStringLiteral("b")), QVariant(QStringLiteral("2")));
}

TEST_F(LinuxSettingsTest, ValueThatIsStoredAlready_LeavesTheFileAlone) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 0.5F));
    const std::uint64_t before = inode(file());
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 0.5));
    EXPECT_TRUE(domain().write(QStringLiteral("a"), QStringLiteral("0.5")));
    EXPECT_TRUE(domain().write(QStringLiteral("never"), QVariant()));
    EXPECT_EQ(inode(file()), before);
    EXPECT_EQ(announced().size(), 1);
}

TEST_F(LinuxSettingsTest, Replacement_KeepsTheModeOfTheFile) {
    writeInPlace("[General]\na=1\n");
    setMode(file(), 0640);
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 2));
    EXPECT_EQ(mode(file()), 0640U);
}

TEST_F(LinuxSettingsTest, SymbolicLink_StaysAndItsTargetIsReplaced) {
    const QString target = root() + QLatin1String("/dotfiles/real.conf");
    writeInPlace(target, "[General]\na=1\n");
    QDir().mkpath(folder());
    ASSERT_TRUE(QFile::link(QStringLiteral("../dotfiles/real.conf"), file()));
    EXPECT_EQ(domain().value(QStringLiteral("a")), QVariant(QStringLiteral("1")));
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 2));
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_EQ(read(target), QByteArray("[General]\na=2\n"));
    EXPECT_EQ(QDir(root() + QLatin1String("/dotfiles")).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("real.conf")});
}

TEST_F(LinuxSettingsTest, SymbolicLinkWithoutTarget_GetsItsTarget) {
    const QString target = root() + QLatin1String("/dotfiles/real.conf");
    QDir().mkpath(root() + QLatin1String("/dotfiles"));
    QDir().mkpath(folder());
    ASSERT_TRUE(QFile::link(target, file()));
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 2));
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_EQ(read(target), QByteArray("[General]\na=2\n"));
}

TEST_F(LinuxSettingsTest, Write_LeavesNothingBesideTheFileButItsLock) {
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 1));
    EXPECT_TRUE(domain().write(QStringLiteral("a"), 2));
    const QStringList expected{QStringLiteral(".test.conf.lock"), QStringLiteral("test.conf")};
    EXPECT_EQ(names(), expected);
}

} // namespace quorvane::test
