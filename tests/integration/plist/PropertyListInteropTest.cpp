#include "plist/PropertyList.h"
#include "tests/support/DescribeValue.h"
#include "tests/support/Utc.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <limits>

namespace quorvane::test {

namespace {

constexpr int generousTimeoutMs = 120'000;

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// What tests/fixtures/plist_trees.py writes as its reference, said again.
QVariantMap reference() {
    using Reals = std::numeric_limits<double>;
    QByteArray everyByte(256, Qt::Uninitialized);
    for (int i = 0; i < 256; ++i) {
        everyByte[i] = static_cast<char>(i);
    }
    const QVariantMap nested{
        {QStringLiteral("nested"), QVariantList{QVariant(QVariantList{QVariant(QVariantList{})})}}};
    return {
        {QStringLiteral("string"), QStringLiteral("Grüße, <電池> & \"🔋\"\t\n ' ]]> ")},
        {QStringLiteral("empty"),
         QVariantList{QString(), QByteArray(), QVariantList{}, QVariantMap{}}},
        {QStringLiteral("integers"),
         QVariantList{0LL, 1LL, -1LL, 127LL, 255LL, 256LL, 2147483648LL, -2147483648LL,
                      9007199254740993LL, std::numeric_limits<qlonglong>::max(),
                      std::numeric_limits<qlonglong>::min(), 9223372036854775808ULL,
                      std::numeric_limits<qulonglong>::max()}},
        {QStringLiteral("reals"),
         QVariantList{0.0, 1.0, -72.125, 0.1, 1e22, 1e-7, Reals::max(), Reals::denorm_min(),
                      Reals::infinity(), -Reals::infinity(), -0.0, Reals::quiet_NaN()}},
        {QStringLiteral("dates"), QVariantList{utc(QDate(2024, 2, 29), QTime(23, 59, 59)),
                                               utc(QDate(1, 1, 1), QTime(0, 0))}},
        {QStringLiteral("data"), everyByte},
        {QStringLiteral("booleans"), QVariantList{true, false}},
        {QString(), QVariantMap{{QStringLiteral("key with <&> and 電池"), nested}}},
    };
}

} // namespace

/// Other programs read what this one writes, and the other way round.
class PropertyListInteropTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!QFile::exists(python_)) {
            GTEST_SKIP() << "skipped: there is no " << qPrintable(python_);
        }
        ASSERT_TRUE(folder_.isValid());
    }

    static bool hasPlistutil() {
        return !QStandardPaths::findExecutable(QStringLiteral("plistutil")).isEmpty();
    }

    /// A new folder of the test.
    [[nodiscard]] QString folder(const char* name) const {
        QString path = folder_.filePath(QLatin1String(name));
        EXPECT_TRUE(QDir().mkpath(path));
        return path;
    }

    /// Whether the program ended well; says what it said if not.
    static testing::AssertionResult run(const QString& program, const QStringList& arguments) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program, arguments);
        if (!process.waitForFinished(generousTimeoutMs)) {
            process.kill();
            process.waitForFinished();
            return testing::AssertionFailure() << qPrintable(program) << " did not end";
        }
        const bool isGood = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
        return (isGood ? testing::AssertionSuccess() : testing::AssertionFailure())
               << process.readAll().constData();
    }

    testing::AssertionResult runScript(const QStringList& arguments) const {
        const auto script = QStringLiteral(QUORVANE_TEST_FIXTURES "/plist_trees.py");
        return run(python_, QStringList{script} + arguments);
    }

    /// Whether the expression is true with `content`, the list as written here, and `value`, as
    /// Python reads it.
    testing::AssertionResult holdsInPython(const char* expression, const QVariant& root) const {
        const QString path = folder_.filePath(QStringLiteral("list.plist"));
        const auto xml = writePropertyList(root);
        if (!xml || !writeFile(path, *xml)) {
            return testing::AssertionFailure() << "cannot write the list";
        }
        const auto script = QStringLiteral("import plistlib, sys\n"
                                           "content = open(sys.argv[1], 'rb').read()\n"
                                           "value = plistlib.loads(content)\n"
                                           "sys.exit(0 if %1 else value)");
        return run(python_, {QStringLiteral("-c"), script.arg(QLatin1String(expression)), path});
    }

    /// Converts all lists of a folder with plistutil; `format` is "xml" or "bin". (When plistutil
    /// refuses a list, it still ends with 0.)
    static void convert(const QString& from, const QString& to, const char* format) {
        const QStringList names = QDir(from).entryList(QDir::Files);
        ASSERT_FALSE(names.isEmpty());
        for (const QString& name : names) {
            const QString target = QDir(to).filePath(name);
            ASSERT_TRUE(run(QStringLiteral("plistutil"),
                            {QStringLiteral("-f"), QLatin1String(format), QStringLiteral("-i"),
                             QDir(from).filePath(name), QStringLiteral("-o"), target}));
            ASSERT_TRUE(QFile::exists(target)) << qPrintable(name);
        }
    }

    /// Reads all lists of a folder and writes them to the other.
    static void rewrite(const QString& from, const QString& to) {
        const QStringList names = QDir(from).entryList(QDir::Files);
        ASSERT_FALSE(names.isEmpty());
        for (const QString& name : names) {
            const auto list = readPropertyList(contentOf(QDir(from).filePath(name)));
            ASSERT_TRUE(list.value) << qPrintable(name + QLatin1String(": ") + list.error);
            const auto xml = writePropertyList(*list.value);
            ASSERT_TRUE(xml) << qPrintable(name);
            ASSERT_TRUE(writeFile(QDir(to).filePath(name), *xml));
        }
    }

    const QString python_ = QStringLiteral("/usr/bin/python3");
    QTemporaryDir folder_;
};

TEST_F(PropertyListInteropTest, ListOfPython_IsReadRight) {
    const QString theirs = folder("theirs");
    ASSERT_TRUE(runScript({QStringLiteral("write"), QStringLiteral("xml"), theirs}));
    const auto list = readPropertyList(contentOf(theirs + QLatin1String("/reference.plist")));
    ASSERT_TRUE(list.value) << qPrintable(list.error);
    EXPECT_EQ(describe(*list.value), describe(reference()));
}

TEST_F(PropertyListInteropTest, WrittenList_IsReadRightByPython) {
    const QString theirs = folder("theirs");
    const QString ours = folder("ours");
    ASSERT_TRUE(runScript({QStringLiteral("write"), QStringLiteral("xml"), theirs}));
    ASSERT_NO_FATAL_FAILURE(rewrite(theirs, ours));
    const auto xml = writePropertyList(reference());
    ASSERT_TRUE(xml);
    ASSERT_TRUE(writeFile(ours + QLatin1String("/reference.plist"), *xml));
    EXPECT_TRUE(runScript({QStringLiteral("same"), theirs, ours}));
}

TEST_F(PropertyListInteropTest, WrittenCarriageReturn_IsReadRightByPython) {
    EXPECT_TRUE(holdsInPython("value == 'a\\r\\nb\\rc'", QStringLiteral("a\r\nb\rc")));
    EXPECT_FALSE(holdsInPython("value == 'a\\r\\nb\\rc'", QStringLiteral("a\nb\rc")));
}

TEST_F(PropertyListInteropTest, WrittenList_IsLaidOutAsByPython) {
    QVariant root = QVariantMap{{QStringLiteral("<data>"), QByteArray(200, 'x')},
                                {QStringLiteral("empty"), QVariantList{QVariantList{}, QByteArray(),
                                                                       QVariantMap{}, QString()}},
                                {QStringLiteral("yes"), true}};
    for (int depth = 0; depth < 12; ++depth) {
        root = QVariantList{root, depth, QByteArray(100, 'y')};
    }
    EXPECT_TRUE(holdsInPython("plistlib.dumps(value) == content", root));
}

TEST_F(PropertyListInteropTest, ListConvertedFromBinaryByPlistutil_IsReadRight) {
    if (!hasPlistutil()) {
        GTEST_SKIP() << "skipped: there is no plistutil (package libplist-utils)";
    }
    const QString binary = folder("binary");
    const QString converted = folder("converted");
    const QString ours = folder("ours");
    ASSERT_TRUE(runScript({QStringLiteral("write"), QStringLiteral("binary"), binary}));
    ASSERT_NO_FATAL_FAILURE(convert(binary, converted, "xml"));
    ASSERT_NO_FATAL_FAILURE(rewrite(converted, ours));
    EXPECT_TRUE(runScript({QStringLiteral("same"), binary, ours}));
}

TEST_F(PropertyListInteropTest, ListPassedOnByPlistutil_IsReadRight) {
    if (!hasPlistutil()) {
        GTEST_SKIP() << "skipped: there is no plistutil (package libplist-utils)";
    }
    const QString theirs = folder("theirs");
    const QString converted = folder("converted");
    const QString ours = folder("ours");
    ASSERT_TRUE(runScript({QStringLiteral("write"), QStringLiteral("xml"), theirs}));
    ASSERT_NO_FATAL_FAILURE(convert(theirs, converted, "xml"));
    ASSERT_NO_FATAL_FAILURE(rewrite(converted, ours));
    EXPECT_TRUE(runScript({QStringLiteral("same"), theirs, ours}));
}

TEST_F(PropertyListInteropTest, WrittenList_IsReadRightByPlistutil) {
    if (!hasPlistutil()) {
        GTEST_SKIP() << "skipped: there is no plistutil (package libplist-utils)";
    }
    const QString start = folder("start");
    const QString startXml = folder("startXml");
    const QString ours = folder("ours");
    const QString binary = folder("binary");
    const QString back = folder("back");
    const QString again = folder("again");
    ASSERT_TRUE(runScript({QStringLiteral("write"), QStringLiteral("binary"), start}));
    ASSERT_NO_FATAL_FAILURE(convert(start, startXml, "xml"));
    ASSERT_NO_FATAL_FAILURE(rewrite(startXml, ours));
    ASSERT_NO_FATAL_FAILURE(convert(ours, binary, "bin"));
    EXPECT_TRUE(runScript({QStringLiteral("same"), ours, binary}));
    ASSERT_NO_FATAL_FAILURE(convert(binary, back, "xml"));
    ASSERT_NO_FATAL_FAILURE(rewrite(back, again));
    EXPECT_TRUE(runScript({QStringLiteral("same"), ours, again}));
}

} // namespace quorvane::test
