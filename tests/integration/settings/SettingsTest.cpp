#include "tests/integration/settings/SettingsTest.h"

#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <sys/stat.h>

namespace quorvane::test {

namespace {

QString rootTemplate() {
    const QFileInfo memory(QStringLiteral("/dev/shm"));
    return (memory.isWritable() ? memory.filePath() : QDir::tempPath()) +
           QLatin1String("/quorvane-settings-XXXXXX");
}

struct stat statusOf(const QString& path) {
    struct stat status {};

    EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0) << qPrintable(path);
    return status;
}

} // namespace

SettingsTest::SettingsTest() : root_(rootTemplate()) {}

SettingsDomain& SettingsTest::domain() {
    if (!settings_) {
        settings_.emplace(log_, folder());
        QObject::connect(&settings_->domain(QStringLiteral("test")), &SettingsDomain::changed,
                         [this](QStringList keys) {
                             keys.sort();
                             announced_.append(keys);
                         });
    }
    return settings_->domain(QStringLiteral("test"));
}

SettingsDomain& SettingsTest::elsewhere() {
    if (!others_) {
        others_.emplace(othersLog_, folder());
    }
    return others_->domain(QStringLiteral("test"));
}

void SettingsTest::writeInPlace(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile out(path);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly)) << qPrintable(out.errorString());
    ASSERT_EQ(out.write(bytes), bytes.size());
}

void SettingsTest::writeByRename(const QByteArray& bytes) const {
    const QString copy = file() + QLatin1Char('~');
    writeInPlace(copy, bytes);
    ASSERT_EQ(
        std::rename(QFile::encodeName(copy).constData(), QFile::encodeName(file()).constData()), 0);
}

QByteArray SettingsTest::read(const QString& path) {
    QFile in(path);
    EXPECT_TRUE(in.open(QIODevice::ReadOnly)) << qPrintable(path);
    return in.readAll();
}

std::uint64_t SettingsTest::inode(const QString& path) {
    return statusOf(path).st_ino;
}

unsigned SettingsTest::mode(const QString& path) {
    constexpr unsigned permissionBits = 07777;
    return statusOf(path).st_mode & permissionBits;
}

void SettingsTest::setMode(const QString& path, unsigned mode) {
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), mode), 0);
}

QStringList SettingsTest::names() const {
    return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                    QDir::NoDotAndDotDot);
}

bool SettingsTest::waitForAnnouncement() {
    const bool came = waitUntil([this] { return announced_.size() > awaited_; });
    awaited_ = announced_.size();
    return came;
}

void SettingsTest::run(std::chrono::milliseconds time) {
    const QDeadlineTimer end(time);
    EXPECT_TRUE(waitUntil([&end] { return end.hasExpired(); }, time + std::chrono::seconds(10)));
}

} // namespace quorvane::test
