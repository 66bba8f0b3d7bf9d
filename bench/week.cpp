#include "app/AppDelegate.h"
#include "battery/Battery.h"
#include "core/QuorvanePrefs.h"
#include "core/SharedInstances.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tests/unit/simulated/LaptopDays.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <memory>
#include <vector>

namespace quorvane {

namespace {

constexpr std::int64_t minutesOfAWeek = 7 * test::LaptopDays::minutesOfADay;
constexpr int longHistory = 100000; // samples, about three months of a laptop that is always on
constexpr int readings = 1001;
constexpr double perMicro = 1e6;

/// What all threads of this process have taken of the processor, in seconds. The time of the clock
/// would depend on what else the machine does.
double processorSeconds() {
    constexpr double perNano = 1e-9;
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * perNano;
}

double seconds(test::LaptopDays& days, std::int64_t minutes) {
    const double before = processorSeconds();
    for (std::int64_t i = 0; i < minutes; ++i) {
        days.passMinute();
    }
    return processorSeconds() - before;
}

/// The median of many readings that follow a history of this length, in microseconds.
double microsecondsAReading(SimulatedPlatform& laptop, int samples) {
    Battery& battery = Battery::battery();
    battery.setDataPoints(QList<int>(samples, 50));
    battery.setDataTimes(QList<QDateTime>(samples, laptop.clock().now()));
    std::vector<double> times;
    for (int i = 0; i < readings; ++i) {
        const double before = processorSeconds();
        laptop.powerSources().announce();
        times.push_back(processorSeconds() - before);
    }
    const auto middle = times.begin() + readings / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle * perMicro;
}

void measure() {
    auto simulated = std::make_unique<SimulatedPlatform>();
    SimulatedPlatform& laptop = *simulated;
    SharedInstances::reset(std::move(simulated));
    laptop.settings()
        .domain(QuorvanePrefs::domainName())
        .writeFromElsewhere(QStringLiteral("QuorvaneAutoStartSetting"), 0);
    test::LaptopDays days(laptop);
    {
        AppDelegate program([] {});
        [[maybe_unused]] const bool goesOn = program.applicationWillFinishLaunching();
        program.applicationDidFinishLaunching();
        SimulatedClock::runMainQueue();

        constexpr int further = 4;
        std::printf("a simulated week             %8.3f s\n", seconds(days, minutesOfAWeek));
        std::printf("the next four                %8.3f s\n",
                    seconds(days, further * minutesOfAWeek));
        for (const int samples : {0, longHistory}) {
            std::printf("a reading after %6d samples %7.1f us\n", samples,
                        microsecondsAReading(laptop, samples));
        }
    }
    SharedInstances::reset(nullptr);
}

} // namespace

} // namespace quorvane

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    quorvane::measure();
    return 0;
}
