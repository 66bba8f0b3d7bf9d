#include "modules/BrightnessModule.h"

#include "core/QuorvanePrefs.h"
#include "platform/Displays.h"
#include "platform/Log.h"
#include "platform/Platform.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr std::size_t maximumDisplays = 16;

const QString& brightnessSettingKey() {
    static const QString key = QStringLiteral("brightnessSetting");
    return key;
}

} // namespace

void BrightnessModule::init() {
    QuorvaneModule::init();
    QuorvanePrefs::bindKey(brightnessSettingKey(), *this, QStringLiteral("BrightnessModuleAmount"));
}

QString BrightnessModule::label() const {
    return QStringLiteral("Dimming Screen");
}

QString BrightnessModule::imageName() const {
    return QStringLiteral("icon-brightness");
}

bool BrightnessModule::activate() {
    setObserved(originalBrightness_, getBrightness(), QStringLiteral("originalBrightness"));
    updateBrightness();
    return true;
}

bool BrightnessModule::deactivate() {
    if (originalBrightness_ != 0.0F && originalBrightness_ > getBrightness()) {
        setBrightness(originalBrightness_);
    }
    platform().displays().changesEnded();
    return true;
}

void BrightnessModule::didChangeValueForKey(const QString& key) {
    if (key == brightnessSettingKey() && running()) {
        updateBrightness();
    }
    QuorvaneModule::didChangeValueForKey(key);
}

void BrightnessModule::setBrightness(float brightness) {
    Displays& displays = platform().displays();
    const float clamped = std::max(std::min(brightness, 1.0F), 0.0F);
    for (const DisplayId display : displays.activeDisplays(maximumDisplays).displays) {
        displays.setBrightness(display, clamped);
    }
}

float BrightnessModule::getBrightness() {
    const Displays& displays = platform().displays();
    const Displays::List list = displays.activeDisplays(maximumDisplays);
    if (list.status != 0) {
        log(QStringLiteral("Call to CGGetActiveDisplayList returned an error (%1)")
                .arg(list.status));
    }
    if (list.displays.empty()) {
        return 1.0F;
    }
    const Displays::Reading reading = displays.brightness(list.displays.front());
    if (reading.status != 0) {
        log(QStringLiteral("Call to IODisplayGetFloatParameter returned an error (%1)")
                .arg(reading.status));
        return 1.0F;
    }
    return reading.brightness;
}

void BrightnessModule::updateBrightness() {
    const double share = static_cast<double>(brightnessSetting_) * 0.01 * 0.8 + 0.1;
    setBrightness(static_cast<float>(static_cast<double>(originalBrightness_) * share));
}

void BrightnessModule::setBrightnessSetting(float percent) {
    setObserved(brightnessSetting_, percent, brightnessSettingKey());
}

} // namespace quorvane
