#include "platform/simulated/SimulatedSettings.h"

namespace quorvane {

QVariant SimulatedSettingsDomain::value(const QString& key) const {
    return values_.value(key);
}

bool SimulatedSettingsDomain::write(const QString& key, const QVariant& value) {
    if (failing_) {
        return false;
    }
    ++writes_[key];
    store(key, value);
    return true;
}

void SimulatedSettingsDomain::writeFromElsewhere(const QString& key, const QVariant& value) {
    store(key, value);
}

void SimulatedSettingsDomain::store(const QString& key, const QVariant& value) {
    const QVariant text = value.isValid() ? QVariant(value.toString()) : value;
    if (values_.value(key) == text) {
        return;
    }
    if (text.isValid()) {
        values_.insert(key, text);
    } else {
        values_.remove(key);
    }
    Q_EMIT changed({key});
}

SimulatedSettingsDomain& SimulatedSettings::domain(const QString& name) {
    auto& entry = domains_[name];
    if (!entry) {
        entry = std::make_unique<SimulatedSettingsDomain>();
    }
    return *entry;
}

} // namespace quorvane
