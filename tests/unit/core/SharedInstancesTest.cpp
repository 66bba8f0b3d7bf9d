#include "core/SharedInstances.h"

#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quorvane::test {

using testing::ElementsAre;

namespace {

/// What has happened, in order. Any thread.
class Story {
  public:
    void tell(const std::string& event) {
        const std::scoped_lock lock(mutex_);
        events_.push_back(event);
    }

    std::vector<std::string> take() {
        const std::scoped_lock lock(mutex_);
        return std::exchange(events_, {});
    }

  private:
    std::mutex mutex_;
    std::vector<std::string> events_;
};

Story& story() {
    static Story told;
    return told;
}

/// A shared instance that tells when it begins and ends.
template <int number>
class Told {
  public:
    Told() { story().tell("+" + std::to_string(number)); }

    ~Told() { story().tell("-" + std::to_string(number)); }

    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;
};

using First = Told<1>;
using Second = Told<2>;
using Third = Told<3>;

/// Work on a thread, which is waited for at the end. If the thread cannot get on, this one does not
/// hang with it: it goes on after a while and says so.
class AwaitedWork {
  public:
    explicit AwaitedWork(std::function<void()> work)
        : thread_([this, work = std::move(work)] {
              begin_.get_future().wait();
              work();
              done_.set_value();
          }) {}

    ~AwaitedWork() { thread_.join(); }

    AwaitedWork(const AwaitedWork&) = delete;
    AwaitedWork& operator=(const AwaitedWork&) = delete;

    void beginAndWait() {
        begin_.set_value();
        if (done_.get_future().wait_for(std::chrono::seconds(10)) != std::future_status::ready) {
            story().tell("stuck");
        }
    }

  private:
    std::promise<void> begin_;
    std::promise<void> done_;
    std::thread thread_;
};

/// A shared instance whose destructor waits for a thread, as that of a timer's owner does.
class Owner {
  public:
    Owner() { story().tell("+owner"); }

    ~Owner() {
        if (work) {
            work->beginAndWait();
        }
        story().tell("-owner");
    }

    Owner(const Owner&) = delete;
    Owner& operator=(const Owner&) = delete;

    std::shared_ptr<AwaitedWork> work; ///< lives longer than this where its thread is stuck
};

class SharedInstancesTest : public SimulatedLaptopTest {
  protected:
    /// Lets the owner's end wait for this work on a thread.
    void awaitAtTheEnd(std::function<void()> work) {
        work_ = std::make_shared<AwaitedWork>(std::move(work));
        SharedInstances::get<Owner>().work = work_;
    }

    static std::vector<std::string> storyOfTheEnd() {
        story().take();
        SharedInstances::reset(std::make_unique<SimulatedPlatform>());
        return story().take();
    }

    // What the thread was given.
    const void* given = nullptr;
    const void* shared = nullptr;

  private:
    std::shared_ptr<AwaitedWork> work_; // its thread is joined while the rest is still there
};

} // namespace

TEST_F(SharedInstancesTest, ConcurrentFirstCalls_MakeOneInstance) {
    struct Counted {
        Counted() { ++made(); }

        static std::atomic<int>& made() {
            static std::atomic<int> count = 0;
            return count;
        }
    };

    constexpr int calls = 8;
    std::vector<std::thread> threads;
    threads.reserve(calls);
    for (int i = 0; i < calls; ++i) {
        threads.emplace_back([] { SharedInstances::get<Counted>(); });
    }
    for (std::thread& each : threads) {
        each.join();
    }
    EXPECT_EQ(Counted::made(), 1);
}

TEST_F(SharedInstancesTest, Reset_EndsTheNewestFirst) {
    SharedInstances::get<First>();
    SharedInstances::get<Second>();
    SharedInstances::get<Third>();
    EXPECT_THAT(storyOfTheEnd(), ElementsAre("-3", "-2", "-1"));
}

TEST_F(SharedInstancesTest, InstanceWithAnotherOwner_LivesOnWithIt) {
    std::shared_ptr<First> owned = SharedInstances::share<First>();
    EXPECT_EQ(owned.get(), &SharedInstances::get<First>());
    EXPECT_THAT(storyOfTheEnd(), ElementsAre());
    EXPECT_NE(owned.get(), &SharedInstances::get<First>());
    story().take();
    owned.reset();
    EXPECT_THAT(story().take(), ElementsAre("-1"));
}

TEST_F(SharedInstancesTest, ThreadThatADestructorWaitsFor_GetsAnOlderInstance) {
    const First* const older = &SharedInstances::get<First>();
    awaitAtTheEnd([this] {
        given = &SharedInstances::get<First>();
        story().tell("asked");
    });
    EXPECT_THAT(storyOfTheEnd(), ElementsAre("asked", "-owner", "-1"));
    EXPECT_EQ(given, older);
}

TEST_F(SharedInstancesTest, ThreadThatADestructorWaitsFor_GetsTheInstanceThatEndsButNoShareInIt) {
    awaitAtTheEnd([this] {
        given = &SharedInstances::get<Owner>();
        shared = SharedInstances::share<Owner>().get();
        story().tell("asked");
    });
    const Owner* const ending = &SharedInstances::get<Owner>();
    EXPECT_THAT(storyOfTheEnd(), ElementsAre("asked", "-owner"));
    EXPECT_EQ(given, ending);
    EXPECT_EQ(shared, nullptr);
}

TEST_F(SharedInstancesTest, ThreadThatADestructorWaitsFor_GetsANewOneForOneThatIsGone) {
    SharedInstances::get<First>();
    awaitAtTheEnd([] {
        SharedInstances::get<Second>();
        story().tell("asked");
    });
    SharedInstances::get<Second>();
    EXPECT_THAT(storyOfTheEnd(), ElementsAre("-2", "+2", "asked", "-owner", "-2", "-1"));
}

TEST_F(SharedInstancesTest, ThreadThatTheOldPlatformWaitsFor_GetsAnInstanceThatStays) {
    AwaitedWork work([] { SharedInstances::get<First>(); });
    std::shared_ptr<void> end(nullptr, [&work](void*) { work.beginAndWait(); });
    // The clock's settling is one of the things that end with the platform.
    laptop().clock().setSettling([end = std::move(end)] {});
    EXPECT_THAT(storyOfTheEnd(), ElementsAre("+1"));
    EXPECT_THAT(storyOfTheEnd(), ElementsAre("-1"));
}

} // namespace quorvane::test
