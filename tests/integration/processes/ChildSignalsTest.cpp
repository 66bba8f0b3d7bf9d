#include "platform/linux/processes/ChildSignals.h"

#include "tests/integration/processes/PidNamespace.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace quorvane::test {
namespace {

/// A child of a process that a test can end at any moment. The child says 'g' when it goes on and
/// then waits until it is ended, or says 'l' because nobody has.
class ChildSignalsTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!PidNamespace::isInside()) {
            GTEST_SKIP() << "skipped: a PID namespace of the test's own is not permitted here";
        }
        ASSERT_EQ(::pipe(words_.data()), 0);
        ASSERT_EQ(::pipe(leave_.data()), 0);
    }

    void TearDown() override {
        for (const int descriptor : {words_[0], leave_[1]}) {
            if (descriptor >= 0) {
                ::close(descriptor);
            }
        }
    }

    /// `inChild` runs in the child before it goes on; the parent's id is what it gets.
    void start(const std::function<void(pid_t parent)>& inChild) {
        parent_ = ::fork();
        if (parent_ == 0) {
            const pid_t parent = ::getpid();
            if (::fork() == 0) {
                ::close(leave_[0]);
                ::close(leave_[1]);
                inChild(parent);
                say('g');
                waitForTheEnd();
            }
            ::close(words_[1]);
            ::close(leave_[1]);
            waitForLeave();
            ::_exit(EXIT_SUCCESS);
        }
        ::close(words_[1]);
        ::close(leave_[0]);
    }

    void endParent() {
        ::close(std::exchange(leave_[1], -1));
        ASSERT_EQ(::waitpid(parent_, nullptr, 0), parent_);
    }

    /// What the child says next; 0 when it has ended.
    [[nodiscard]] char heard() const {
        char word = 0;
        return ::read(words_[0], &word, 1) == 1 ? word : '\0';
    }

    void say(char word) const { EXPECT_EQ(::write(words_[1], &word, 1), 1); }

  private:
    void waitForLeave() const {
        char none = 0;
        EXPECT_EQ(::read(leave_[0], &none, 1), 0);
    }

    /// Not for ever: a test that fails must not hang.
    [[noreturn]] void waitForTheEnd() const {
        constexpr unsigned seconds = 10;
        ::sleep(seconds);
        say('l');
        ::_exit(EXIT_SUCCESS);
    }

    std::array<int, 2> words_{-1, -1};
    std::array<int, 2> leave_{-1, -1};
    pid_t parent_ = -1;
};

TEST_F(ChildSignalsTest, ParentThatEndsLater_EndsTheChild) {
    start([](pid_t parent) { endWithParent(parent, SIGKILL); });
    ASSERT_EQ(heard(), 'g');
    endParent();
    EXPECT_EQ(heard(), '\0');
}

TEST_F(ChildSignalsTest, ParentThatEndedBefore_EndsTheChildToo) {
    start([this](pid_t parent) {
        say('b');
        while (::getppid() == parent) {
            ::usleep(1000);
        }
        endWithParent(parent, SIGKILL);
    });
    ASSERT_EQ(heard(), 'b');
    endParent();
    EXPECT_EQ(heard(), '\0');
}

} // namespace
} // namespace quorvane::test
