#include "mode/BatterySaver.h"
#include "modules/BrowserModule.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <random>

namespace quorvane::test {

namespace {

constexpr int sequences = 1000;
constexpr int stepsEach = 15;

/// A user who does things at random while the modules work, and what must be true meanwhile.
class PausingInvariantsTest : public SimulatedLaptopTest {
  protected:
    PausingInvariantsTest() { start(); }

    /// Everything that is at random comes from this seed.
    void playSequence(unsigned seed) {
        random_.seed(seed);
        module().setEnabled(true);
        for (int step = 0; step < stepsEach; ++step) {
            doSomething();
            pass();
            checkInvariants();
            if (HasFailure()) {
                return;
            }
        }
        BatterySaver::batterySaver().setEnabled(false);
        pass();
        EXPECT_TRUE(laptop().processes().stopped().empty()) << "at the end of sequence " << seed;
        while (!pids_.empty()) {
            quitApplication();
        }
    }

  private:
    static quorvane::BrowserModule& module() {
        return dynamic_cast<quorvane::BrowserModule&>(
            *BatterySaver::batterySaver().moduleWithIdentifier(QStringLiteral("BrowserModule")));
    }

    [[nodiscard]] std::size_t upTo(std::size_t count) { return random_() % count; }

    void doSomething() {
        switch (upTo(8)) {
        case 0:
        case 1:
            startApplication();
            break;
        case 2:
        case 3:
        case 4:
            laptop().workspace().activate(pids_.empty() ? 0 : pids_[upTo(pids_.size())]);
            break;
        case 5:
            quitApplication();
            break;
        case 6:
            changeSetting();
            break;
        default:
            BatterySaver::batterySaver().setEnabled(upTo(3) != 0);
        }
    }

    void startApplication() {
        static const std::array identifiers{
            QStringLiteral("com.apple.Safari"), QStringLiteral("com.google.Chrome"),
            QStringLiteral("org.mozilla.Firefox"), QStringLiteral("org.example.Editor")};
        pids_.push_back(++lastPid_);
        laptop().workspace().run(identifiers.at(upTo(identifiers.size())), lastPid_);
    }

    void quitApplication() {
        if (pids_.empty()) {
            return;
        }
        const auto gone = std::next(pids_.begin(), static_cast<std::ptrdiff_t>(upTo(pids_.size())));
        laptop().workspace().quit(*gone);
        laptop().processes().end(*gone);
        pids_.erase(gone);
    }

    void changeSetting() {
        switch (upTo(4)) {
        case 0:
            module().setControlChrome(!module().controlChrome());
            break;
        case 1:
            module().setControlFirefox(!module().controlFirefox());
            break;
        case 2:
            module().setControlSafari(!module().controlSafari());
            break;
        default:
            module().toggleEnabled();
        }
    }

    /// Long enough for the one in front to be resumed, at times for the others to be stopped.
    void pass() {
        const int halves = upTo(8) == 0 ? 11 : 2;
        for (int half = 0; half < halves; ++half) {
            laptop().clock().advance(Seconds(0.5));
            module().waitForLooks();
            SimulatedClock::runMainQueue();
        }
    }

    void checkInvariants() {
        const auto& stopped = laptop().processes().stopped();
        const auto front = laptop().workspace().frontmostApplication();
        EXPECT_TRUE(!front || stopped.count(front->processIdentifier) == 0) << "it is in front";
        const std::vector<std::int32_t> listed = module().pausedApps();
        for (const std::int32_t pid : stopped) {
            EXPECT_NE(std::find(listed.begin(), listed.end(), pid), listed.end())
                << "nobody would resume it";
        }
        if (!module().running()) {
            EXPECT_TRUE(stopped.empty());
        }
        for (const RunningApplication& each : laptop().workspace().runningApplications()) {
            EXPECT_FALSE(each.bundleIdentifier == QStringLiteral("org.example.Editor") &&
                         stopped.count(each.processIdentifier) != 0);
        }
    }

    std::mt19937 random_;
    std::vector<std::int32_t> pids_;
    std::int32_t lastPid_ = 1000;
};

} // namespace

TEST_F(PausingInvariantsTest, ThousandRandomSequences_NeverStopTheFrontAndLeaveNothingStopped) {
    for (unsigned seed = 1; seed <= sequences && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        playSequence(seed);
    }
}

} // namespace quorvane::test
