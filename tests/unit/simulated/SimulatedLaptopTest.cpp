#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include "app/AppDelegate.h"
#include "app/ModuleList.h"
#include "core/QuorvanePrefs.h"
#include "core/UserDefaults.h"
#include "mode/BatterySaver.h"
#include "mode/RegisteredDefaults.h"

namespace quorvane::test {

SimulatedLaptopTest::SimulatedLaptopTest() {
    auto laptop = std::make_unique<SimulatedPlatform>();
    laptop_ = laptop.get();
    SharedInstances::reset(std::move(laptop));
    // For tests that begin with the controller itself.
    useModules(makeModules);
}

SimulatedLaptopTest::~SimulatedLaptopTest() {
    delegate_.reset();
    SharedInstances::reset(nullptr);
}

SimulatedSettingsDomain& SimulatedLaptopTest::settings() {
    return laptop_->settings().domain(QuorvanePrefs::domainName());
}

QVariant SimulatedLaptopTest::stored(const char* key) {
    return settings().value(QString::fromLatin1(key));
}

void SimulatedLaptopTest::store(const char* key, const QVariant& value) {
    settings().writeFromElsewhere(QString::fromLatin1(key), value);
}

void SimulatedLaptopTest::startWithoutMainQueue() {
    delegate_ = std::make_unique<AppDelegate>([this] { terminated_ = true; });
    if (delegate_->applicationWillFinishLaunching()) {
        delegate_->applicationDidFinishLaunching();
    }
}

void SimulatedLaptopTest::start() {
    startWithoutMainQueue();
    SimulatedClock::runMainQueue();
}

bool SimulatedLaptopTest::quit() {
    delegate_->quit();
    SimulatedClock::runMainQueue();
    return terminated_;
}

void SimulatedLaptopTest::registerDefaults() {
    for (const QVariantMap& group : registeredDefaults()) {
        QuorvanePrefs::userDefaults().registerDefaults(group);
    }
}

void SimulatedLaptopTest::useModules(std::function<ModuleList()> makeModules) {
    SharedInstances::get<ModuleFactory>().makeModules = std::move(makeModules);
}

QStringList SimulatedLaptopTest::notificationTitles() {
    return laptop_->userNotifications().titles();
}

QStringList SimulatedLaptopTest::logLines() {
    return laptop_->logSink().lines();
}

} // namespace quorvane::test
