#include "tests/integration/settings/SettingsTest.h"
#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>

#include <memory>
#include <thread>

namespace quorvane::test {

using namespace std::chrono_literals;

/// A program that stores ever greater numbers under one key.
class Hammer {
  public:
    Hammer(QString folder, QString key) : folder_(std::move(folder)), key_(std::move(key)) {}

    Hammer(const Hammer&) = delete;
    Hammer& operator=(const Hammer&) = delete;

    ~Hammer() { kill(); }

    /// Goes on after the last confirmed number.
    [[nodiscard]] bool start(int last) {
        process_ = std::make_unique<QProcess>();
        process_->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process_->start(QStringLiteral(QUORVANE_SETTINGS_HAMMER),
                        {QStringLiteral("write"), folder_, key_, QString::number(confirmed_ + 1),
                         QString::number(last)});
        return process_->waitForStarted();
    }

    [[nodiscard]] bool waitForConfirmation() {
        const bool came = process_->waitForReadyRead();
        takeConfirmations();
        return came;
    }

    void kill() {
        if (process_) {
            process_->kill();
            process_->waitForFinished();
            takeConfirmations();
            process_.reset();
        }
    }

    [[nodiscard]] bool hasEnded() {
        takeConfirmations();
        return process_->state() == QProcess::NotRunning;
    }

    [[nodiscard]] int exitCode() const { return process_->exitCode(); }

    /// The last number that the program said was stored.
    [[nodiscard]] int confirmed() const { return confirmed_; }

    void takeConfirmations() {
        while (process_->canReadLine()) {
            confirmed_ = process_->readLine().trimmed().toInt();
        }
    }

  private:
    QString folder_;
    QString key_;
    std::unique_ptr<QProcess> process_;
    int confirmed_ = 0;
};

/// Several real programs over one file.
class SettingsProcessesTest : public SettingsTest {
  protected:
    /// The number stored under `key`, read by QSettings from a copy that it has never seen.
    int stored(const QString& key) {
        const QString copy = root() + QStringLiteral("/copy-%1.ini").arg(++copies_);
        writeInPlace(copy, read());
        const QSettings settings(copy, QSettings::IniFormat);
        const int number = settings.value(key).toInt();
        EXPECT_EQ(settings.status(), QSettings::NoError);
        QFile::remove(copy);
        return number;
    }

    const QString left = QStringLiteral("left");
    const QString right = QStringLiteral("right");

  private:
    int copies_ = 0;
};

TEST_F(SettingsProcessesTest, TwoProcessesWritingDifferentKeys_LoseNothing) {
    constexpr int writes = 10000;
    Hammer first(folder(), left);
    Hammer second(folder(), right);
    ASSERT_TRUE(first.start(writes));
    ASSERT_TRUE(second.start(writes));
    ASSERT_TRUE(waitUntil([&] { return first.hasEnded() && second.hasEnded(); }, 250s));
    EXPECT_EQ(first.exitCode(), 0);
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(first.confirmed(), writes);
    EXPECT_EQ(second.confirmed(), writes);
    EXPECT_EQ(read(), QByteArray("[General]\nleft=10000\nright=10000\n"));
}

TEST_F(SettingsProcessesTest, KilledAtTwoHundredRandomMoments_FileIsWhole) {
    constexpr int kills = 200;
    constexpr int endless = 1'000'000'000;
    Hammer victim(folder(), left);
    Hammer neighbour(folder(), right);
    ASSERT_TRUE(neighbour.start(endless));
    for (int i = 0; i < kills; ++i) {
        ASSERT_TRUE(victim.start(endless));
        ASSERT_TRUE(victim.waitForConfirmation());
        std::this_thread::sleep_for(
            std::chrono::microseconds(QRandomGenerator::global()->bounded(10'000)));
        victim.kill();
        // What was being stored when the end came may have been stored or not.
        const int number = stored(left);
        ASSERT_GE(number, victim.confirmed()) << "after kill " << i;
        ASSERT_LE(number, victim.confirmed() + 1) << "after kill " << i;
        ASSERT_FALSE(neighbour.hasEnded());
        ASSERT_GE(stored(right), neighbour.confirmed()) << "after kill " << i;
    }
    neighbour.kill();
    EXPECT_GE(stored(right), neighbour.confirmed());
    EXPECT_LE(stored(right), neighbour.confirmed() + 1);
    EXPECT_GT(neighbour.confirmed(), kills);

    EXPECT_TRUE(domain().write(QStringLiteral("last"), 1));
    const QStringList expected{QStringLiteral(".test.conf.lock"), QStringLiteral("test.conf")};
    EXPECT_EQ(names(), expected);
    EXPECT_TRUE(log_.lines.isEmpty());
}

TEST_F(SettingsProcessesTest, LockOfAKilledProcess_HoldsNobodyUp) {
    Hammer victim(folder(), left);
    ASSERT_TRUE(victim.start(1'000'000'000));
    ASSERT_TRUE(victim.waitForConfirmation());
    victim.kill();
    EXPECT_TRUE(domain().write(right, 1));
    EXPECT_TRUE(log_.lines.isEmpty());
}

/// A program that waits in its event loop for changes.
class SettingsWatcherTest : public SettingsProcessesTest {
  protected:
    void SetUp() override {
        writeInPlace("[General]\nleft=0\n");
        watcher_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        watcher_.start(QStringLiteral(QUORVANE_SETTINGS_HAMMER),
                       {QStringLiteral("watch"), folder()});
        ASSERT_EQ(nextLine(), QByteArray("ready"));
    }

    void TearDown() override {
        watcher_.kill();
        watcher_.waitForFinished();
    }

    QByteArray nextLine() {
        EXPECT_TRUE(waitUntil([this] { return watcher_.canReadLine(); }));
        return watcher_.readLine().trimmed();
    }

    /// How often the program has gone to sleep: once per wake-up.
    [[nodiscard]] int sleeps() const {
        int count = 0;
        const QByteArray status = read(QStringLiteral("/proc/%1/status").arg(watcher_.processId()));
        for (const QByteArray& line : status.split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:")) {
                count = line.split(':')[1].trimmed().toInt();
            }
        }
        EXPECT_GT(count, 0);
        return count;
    }

    [[nodiscard]] int threads() const {
        return static_cast<int>(QDir(QStringLiteral("/proc/%1/task").arg(watcher_.processId()))
                                    .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
                                    .size());
    }

    void expectAsleepDuring(const std::function<void()>& action) {
        run(300ms);
        const int before = sleeps();
        action();
        EXPECT_EQ(sleeps(), before);
        // It is alive all the same.
        writeByRename("[General]\nleft=-1\n");
        EXPECT_EQ(nextLine(), QByteArray("left"));
        EXPECT_GT(sleeps(), before);
    }

  private:
    QProcess watcher_;
};

TEST_F(SettingsWatcherTest, ManyWritesElsewhere_AreSeenInTheEnd) {
    Hammer hammer(folder(), left);
    ASSERT_TRUE(hammer.start(300));
    ASSERT_TRUE(waitUntil([&hammer] { return hammer.hasEnded(); }));
    EXPECT_EQ(nextLine(), QByteArray("left"));
    run(300ms);
    writeByRename("[General]\nleft=300\nright=1\n");
    QByteArray line = nextLine();
    while (line == "left") {
        line = nextLine();
    }
    EXPECT_EQ(line, QByteArray("right"));
}

TEST_F(SettingsWatcherTest, NothingChanges_IsNotWoken) {
    expectAsleepDuring([] { run(2s); });
    EXPECT_EQ(threads(), 1);
}

TEST_F(SettingsWatcherTest, OtherFilesInTheFolder_WakeNobody) {
    expectAsleepDuring([this] {
        for (int i = 0; i < 50; ++i) {
            const QString other = folder() + QStringLiteral("/other-%1.conf").arg(i);
            writeInPlace(other, "[General]\na=1\n");
            setMode(other, 0600);
            QFile::remove(other);
        }
        run(200ms);
    });
}

TEST_F(SettingsWatcherTest, OtherFilesInTheFolderAfterReplacements_WakeNobody) {
    for (int i = 1; i < 4; ++i) {
        writeByRename("[General]\nleft=" + QByteArray::number(i) + "\n");
        EXPECT_EQ(nextLine(), QByteArray("left"));
    }
    expectAsleepDuring([this] {
        writeInPlace(folder() + QLatin1String("/other.conf"), "[General]\na=1\n");
        run(200ms);
    });
}

} // namespace quorvane::test
