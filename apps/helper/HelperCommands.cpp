#include "apps/helper/HelperCommands.h"

#include "apps/helper/Extensions.h"
#include "apps/helper/Holders.h"
#include "apps/helper/PowerSwitch.h"
#include "apps/helper/TaskSampler.h"

namespace quorvane {

namespace {

const QString& lowPowerMode() {
    static const QString thing = QStringLiteral("low power mode");
    return thing;
}

} // namespace

HelperCommands::HelperCommands(Extensions& extensions, PowerSwitch& lowPower, Holders& holders,
                               TaskSampler& sampler)
    : extensions_(extensions), lowPower_(lowPower), holders_(holders), sampler_(sampler) {}

void HelperCommands::loadModuleNamed(const QString& path, const QString& caller,
                                     const Reported& reported) {
    extensions_.load(path, caller, reported);
}

void HelperCommands::unloadModuleNamed(const QString& path, const QString& caller,
                                       const Reported& reported) {
    extensions_.unload(path, caller, reported);
}

void HelperCommands::getTaskPowerMetrics(const Lines& lines) {
    sampler_.sample(lines);
}

QString HelperCommands::getVersion() {
    return QStringLiteral(QUORVANE_HELPER_VERSION);
}

void HelperCommands::enableLowPowerMode(const QString& caller, const Reported& reported) {
    if (!holders_.add(lowPowerMode(), caller)) {
        reported({false, QStringLiteral("Too many programs have switched it on")});
        return;
    }
    lowPower_.hold(lowPowerMode(), [this, caller, reported](const Outcome& outcome) {
        if (!outcome.done) {
            holders_.remove(lowPowerMode(), caller);
        }
        reported(outcome);
    });
}

void HelperCommands::disableLowPowerMode(const QString& caller, const Reported& reported) {
    const bool wasHeld = holders_.isHeld(lowPowerMode());
    holders_.remove(lowPowerMode(), caller);
    if (!wasHeld) {
        reported({true, QStringLiteral("Low power mode was not on")});
    } else if (holders_.isHeld(lowPowerMode())) {
        reported({true, QStringLiteral("Another program keeps low power mode on")});
    } else {
        lowPower_.release(lowPowerMode(), reported);
    }
}

void HelperCommands::abandon(const QString& thing) {
    if (thing == lowPowerMode()) {
        lowPower_.release(lowPowerMode(), [](const Outcome& /*outcome*/) {});
    }
}

} // namespace quorvane
