#include "core/BackgroundTimer.h"
#include "core/BlockTimers.h"
#include "core/Localized.h"
#include "core/NotificationDelivery.h"
#include "core/TaskTimeout.h"
#include "core/Words.h"
#include "platform/MainQueue.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <QSemaphore>

#include <atomic>
#include <thread>

namespace quorvane::test {

namespace {

class WordsTest : public testing::Test {};

class TaskTimeoutTest : public SimulatedLaptopTest {
  protected:
    [[nodiscard]] std::unique_ptr<Task> launched(std::optional<Seconds> duration) {
        laptop().tasks().setBehaviour(QStringLiteral("/bin/tool"), {duration, {}});
        auto task = laptop().tasks().task(QStringLiteral("/bin/tool"), {});
        task->launch();
        return task;
    }

    [[nodiscard]] Seconds now() { return laptop().clock().monotonic(); }
};

class BlockTimerTest : public SimulatedLaptopTest {};

class NotificationDeliveryTest : public SimulatedLaptopTest {
  protected:
    [[nodiscard]] qsizetype visible() { return laptop().userNotifications().delivered().size(); }
};

class BackgroundTimerTest : public SimulatedLaptopTest {
  protected:
    // Work that says when it has begun and then waits to be let go.
    BackgroundTimer::Work blockingWork() {
        return [this] {
            begun.release();
            allowed.acquire();
            ++finished;
        };
    }

    [[nodiscard]] bool beginsAgain() { return begun.tryAcquire(1, 10000); }

    QSemaphore begun;
    QSemaphore allowed;
    std::atomic<int> finished = 0;
};

class LocalizedTest : public testing::Test {};

} // namespace

TEST_F(WordsTest, BlanksTabsAndLineFeeds_SeparateWithoutEmptyPieces) {
    EXPECT_EQ(words(QStringLiteral("  a\tb\n\nc ")),
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    EXPECT_TRUE(words(QString()).isEmpty());
    EXPECT_TRUE(words(QStringLiteral(" \n")).isEmpty());
}

TEST_F(WordsTest, UnicodeWhiteSpace_SeparatesToo) {
    EXPECT_EQ(words(QStringLiteral("a\u00a0b\u2028c")).size(), 3);
}

TEST_F(TaskTimeoutTest, TaskThatEndsQuickly_CostsOneSecond) {
    const auto task = launched(Seconds(0.2));
    const Seconds before = now();
    EXPECT_TRUE(runUntilTimeout(task.get(), Seconds(5)));
    EXPECT_EQ(now() - before, Seconds(1));
    EXPECT_TRUE(logLines().isEmpty());
}

TEST_F(TaskTimeoutTest, TaskThatNeverEnds_IsTerminatedWithinASecondOfTheDeadlineAndLogged) {
    const auto task = launched(std::nullopt);
    const Seconds before = now();
    EXPECT_FALSE(runUntilTimeout(task.get(), Seconds(5)));
    EXPECT_GE(now() - before, Seconds(5));
    EXPECT_LE(now() - before, Seconds(6));
    EXPECT_FALSE(task->isRunning());
    EXPECT_TRUE(laptop().tasks().runs().first().terminated);
    EXPECT_EQ(logLines(), QStringList{QStringLiteral(
                              "Error: terminating task /bin/tool, timeout was reached.")});
}

TEST_F(TaskTimeoutTest, NoTaskOrOneThatDoesNotRun_CountsAsEndedAtOnce) {
    const Seconds before = now();
    EXPECT_TRUE(runUntilTimeout(nullptr, Seconds(5)));
    EXPECT_TRUE(
        runUntilTimeout(laptop().tasks().task(QStringLiteral("/bin/tool"), {}).get(), Seconds(5)));
    EXPECT_EQ(now(), before);
}

TEST_F(BlockTimerTest, Scheduled_RunsTheBlockAtEachFiring) {
    int firings = 0;
    const auto timer = scheduledTimerWithTimeInterval(
        Seconds(10), [&firings] { ++firings; }, Repeats::Yes);
    laptop().clock().advance(Seconds(35));
    EXPECT_EQ(firings, 3);
    timer->invalidate();
    laptop().clock().advance(Seconds(35));
    EXPECT_EQ(firings, 3);
    EXPECT_FALSE(timer->isValid());
}

TEST_F(BlockTimerTest, OneShot_FiresOnceAndIsNoLongerValid) {
    int firings = 0;
    const auto timer = scheduledTimerWithTimeInterval(
        Seconds(10), [&firings] { ++firings; }, Repeats::No);
    EXPECT_TRUE(timer->isValid());
    laptop().clock().advance(Seconds(35));
    EXPECT_EQ(firings, 1);
    EXPECT_FALSE(timer->isValid());
}

TEST_F(BlockTimerTest, NotScheduled_DoesNothingUntilItIs) {
    int firings = 0;
    const auto timer = timerWithTimeInterval(
        Seconds(10), [&firings] { ++firings; }, Repeats::Yes);
    laptop().clock().advance(Seconds(35));
    EXPECT_EQ(firings, 0);
    timer->schedule();
    laptop().clock().advance(Seconds(10));
    EXPECT_EQ(firings, 1);
}

TEST_F(BlockTimerTest, MissingBlock_DoesNothingWhenItFires) {
    const auto timer = scheduledTimerWithTimeInterval(Seconds(10), {}, Repeats::Yes);
    laptop().clock().advance(Seconds(35));
    EXPECT_TRUE(timer->isValid());
}

TEST_F(BlockTimerTest, BlockThatDropsItsOwnTimer_IsHarmless) {
    std::unique_ptr<BlockTimer> timer;
    int firings = 0;
    timer = scheduledTimerWithTimeInterval(
        Seconds(10),
        [&] {
            ++firings;
            timer.reset();
        },
        Repeats::Yes);
    laptop().clock().advance(Seconds(35));
    EXPECT_EQ(firings, 1);
}

TEST_F(NotificationDeliveryTest, ShortNotification_LeavesTheListAfterFiveSeconds) {
    deliverShortNotification({});
    EXPECT_EQ(visible(), 1);
    laptop().clock().advance(Seconds(4.9));
    EXPECT_EQ(visible(), 1);
    laptop().clock().advance(Seconds(0.1));
    EXPECT_EQ(visible(), 0);
}

TEST_F(NotificationDeliveryTest, EachRemoval_TakesItsOwnNotification) {
    UserNotification first;
    first.title = QStringLiteral("first");
    UserNotification second;
    second.title = QStringLiteral("second");
    deliverNotification(first, Seconds(8));
    deliverNotification(second, Seconds(3));
    laptop().clock().advance(Seconds(3));
    ASSERT_EQ(visible(), 1);
    EXPECT_EQ(laptop().userNotifications().delivered().first().title, QStringLiteral("first"));
    laptop().clock().advance(Seconds(5));
    EXPECT_EQ(visible(), 0);
}

TEST_F(NotificationDeliveryTest, DismissedByTheUserBefore_IsSimplyNotFound) {
    UserNotification notification;
    notification.title = QStringLiteral("gone");
    deliverShortNotification(notification);
    laptop().userNotifications().dismiss(QStringLiteral("gone"));
    laptop().clock().advance(Seconds(10));
    EXPECT_EQ(visible(), 0);
}

TEST_F(NotificationDeliveryTest, DeliveredFromAnotherThread_IsRemovedOnTheMainLoop) {
    std::thread thread([] { deliverShortNotification({}); });
    thread.join();
    EXPECT_EQ(visible(), 1);
    laptop().clock().advance(Seconds(5));
    EXPECT_EQ(visible(), 0);
}

TEST_F(BackgroundTimerTest, WorkLongerThanThePeriod_HasThreeRunsUnderWayAndStopLetsThemFinish) {
    BackgroundTimer timer(Seconds(10), blockingWork());
    timer.start();
    for (int i = 0; i < 3; ++i) {
        laptop().clock().advance(Seconds(10));
        ASSERT_TRUE(beginsAgain());
    }
    EXPECT_EQ(finished, 0);
    timer.stop();
    laptop().clock().advance(Seconds(100));
    EXPECT_EQ(begun.available(), 0);
    allowed.release(3);
    while (finished < 3) {
        std::this_thread::yield();
    }
    EXPECT_EQ(finished, 3);
}

TEST_F(BackgroundTimerTest, Work_RunsOffTheMainThread) {
    std::atomic<bool> onMain = true;
    BackgroundTimer timer(Seconds(10), [&] {
        onMain = isMainThread();
        begun.release();
    });
    timer.start();
    laptop().clock().advance(Seconds(10));
    ASSERT_TRUE(beginsAgain());
    EXPECT_FALSE(onMain);
}

TEST_F(BackgroundTimerTest, StartedAgain_RestartsThePeriod) {
    BackgroundTimer timer(Seconds(10), [this] { begun.release(); });
    timer.start();
    laptop().clock().advance(Seconds(9));
    timer.start();
    EXPECT_EQ(laptop().clock().timerCount(), 1U);
    laptop().clock().advance(Seconds(9));
    EXPECT_EQ(begun.available(), 0);
    laptop().clock().advance(Seconds(1));
    EXPECT_TRUE(beginsAgain());
}

TEST_F(BackgroundTimerTest, NewInterval_CountsFromTheNextStart) {
    BackgroundTimer timer(Seconds(10), [this] { begun.release(); });
    timer.setTimeInterval(Seconds(2));
    timer.start();
    laptop().clock().advance(Seconds(2));
    EXPECT_TRUE(beginsAgain());
    EXPECT_EQ(timer.timeInterval(), Seconds(2));
    EXPECT_TRUE(timer.isStarted());
}

TEST_F(BackgroundTimerTest, FiringDropsWorkThatHasNotStarted) {
    constexpr int limit = 64; // runs at a time
    BackgroundTimer timer(Seconds(10), blockingWork());
    for (int i = 0; i < limit; ++i) {
        timer.fireTimer();
    }
    for (int i = 0; i < limit; ++i) {
        ASSERT_TRUE(beginsAgain());
    }
    for (int i = 0; i < 5; ++i) {
        timer.fireTimer();
    }
    allowed.release(limit + 5);
    ASSERT_TRUE(beginsAgain());
    while (finished < limit + 1) {
        std::this_thread::yield();
    }
    EXPECT_EQ(begun.available(), 0);
    EXPECT_EQ(finished, limit + 1);
}

TEST_F(LocalizedTest, UntranslatedText_IsItsOwnKey) {
    EXPECT_EQ(localized("Start Low Power Mode?"), QStringLiteral("Start Low Power Mode?"));
}

TEST_F(LocalizedTest, FilledIn_TakesTheNumberOnceAndPercentSigns) {
    EXPECT_EQ(filledIn(QStringLiteral("Less Than %d%% Battery Remaining"), 20),
              QStringLiteral("Less Than 20% Battery Remaining"));
    EXPECT_EQ(filledIn(QStringLiteral("%s %d %d %"), 7), QStringLiteral("%s 7 %d %"));
}

} // namespace quorvane::test
