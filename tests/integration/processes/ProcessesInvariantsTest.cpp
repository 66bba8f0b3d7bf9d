#include "platform/linux/processes/StoppedProcess.h"
#include "tests/integration/processes/ProcessesFixture.h"

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <string>

namespace quorvane::test {

namespace {

constexpr int realSequences = 100;
constexpr int realSteps = 10;

/// Applications of several processes that are stopped, resumed, killed and started at random.
class ProcessesInvariantsTest : public ProcessesFixture {
  protected:
    void startApplication() {
        // In a group of its own, or in the test's, with a child that shares it.
        const bool isAlone = random() % 2 == 0;
        applications_.push_back(
            &script("sleep 1000 & echo ready; wait", isAlone ? Group::ItsOwn : Group::OfTheTest));
    }

    void step() {
        QProcess& application = *applications_.at(random() % applications_.size());
        const auto what = random() % 6;
        history_ += (what == 0  ? "kill "
                     : what < 3 ? "resume "
                                : "stop ") +
                    std::to_string(idOf(application)) + ", ";
        switch (what) {
        case 0:
            killAndCollect(application);
            applications_.erase(
                std::find(applications_.begin(), applications_.end(), &application));
            startApplication();
            break;
        case 1:
        case 2:
            processes->resume(idOf(application));
            break;
        default:
            processes->stop(idOf(application));
        }
    }

    /// A process that nobody would resume after a crash.
    void expectEveryStoppedOneInTheJournal() {
        std::set<std::int32_t> known;
        RecordingLog quiet;
        const auto entries = PuttingBackJournal(PuttingBackJournal::defaultPath(), quiet).entries();
        ASSERT_TRUE(entries);
        for (const JournalEntry& entry : *entries) {
            if (const std::optional<StoppedProcess> process = stoppedProcess(entry)) {
                known.insert(process->identity.pid);
            }
        }
        for (const std::int32_t pid : stoppedNow()) {
            EXPECT_TRUE(known.count(pid) == 1)
                << pid << " is stopped and not in the journal, after " << history_;
        }
    }

    /// Without the guards: a sanitizer looks for leaks at their end by tracing them, and a process
    /// that is traced counts as stopped.
    [[nodiscard]] static std::vector<std::int32_t> stoppedNow() {
        std::vector<std::int32_t> stopped;
        const ProcessTable table = ProcessTable::read();
        for (const auto& [pid, process] : table.all()) {
            if (process.isStopped && process.name != "quorvane") {
                stopped.push_back(pid);
            }
        }
        return stopped;
    }

    std::mt19937 random;

  private:
    std::vector<QProcess*> applications_;
    std::string history_; ///< for whoever has to find out what went wrong
};

} // namespace

TEST_F(ProcessesInvariantsTest, RandomSequences_EveryStoppedProcessIsInTheJournalAndNoneIsLeft) {
    for (int i = 0; i < 3; ++i) {
        startApplication();
    }
    for (unsigned seed = 1; seed <= realSequences && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        for (int i = 0; i < realSteps && !HasFailure(); ++i) {
            step();
            expectEveryStoppedOneInTheJournal();
        }
        processes->putBack();
        EXPECT_TRUE(waitUntil([] { return stoppedNow().empty(); })) << "at the end";
        EXPECT_EQ(journalled(), 0U);
    }
}

} // namespace quorvane::test
