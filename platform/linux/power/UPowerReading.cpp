#include "platform/linux/power/UPowerReading.h"

#include <utility>

namespace quorvane {

namespace {

// org.freedesktop.UPower.Device.Type and .State
constexpr double typeBattery = 2.0;
constexpr double stateCharging = 1.0;
constexpr double stateDischarging = 2.0;

std::optional<double> number(const QVariantMap& properties, const char* name) {
    const QVariant value = properties.value(QLatin1String(name));
    switch (value.typeId()) {
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toDouble();
    default:
        return std::nullopt;
    }
}

/// UPower gives 0 for a figure that it does not know.
std::optional<double> knownNumber(const QVariantMap& properties, const char* name) {
    const std::optional<double> figure = number(properties, name);
    return figure && *figure > 0.0 ? figure : std::nullopt;
}

bool flag(const QVariantMap& properties, const char* name, bool otherwise) {
    const QVariant value = properties.value(QLatin1String(name));
    return value.typeId() == QMetaType::Bool ? value.toBool() : otherwise;
}

void insertText(QVariantMap& facts, const char* name, const QVariant& text) {
    if (text.typeId() == QMetaType::QString && !text.toString().isEmpty()) {
        facts.insert(QLatin1String(name), text.toString());
    }
}

QString technology(const QVariantMap& properties) {
    static constexpr const char* names[] = {"",          "Li-ion", "Li-poly", "LiFePO4",
                                            "Lead acid", "NiCd",   "NiMH"};
    const double code = number(properties, "Technology").value_or(0.0);
    return code > 0.0 && code < static_cast<double>(std::size(names))
               ? QLatin1String(names[static_cast<std::size_t>(code)])
               : QString();
}

QVariantMap factsFrom(const QVariantMap& properties) {
    QVariantMap facts;
    insertText(facts, "vendor", properties.value(QLatin1String("Vendor")));
    insertText(facts, "model", properties.value(QLatin1String("Model")));
    insertText(facts, "serial", properties.value(QLatin1String("Serial")));
    insertText(facts, "technology", technology(properties));
    static constexpr std::pair<const char*, const char*> figures[] = {
        {"energy", "Energy"},
        {"energyFull", "EnergyFull"},
        {"energyFullDesign", "EnergyFullDesign"},
        {"energyRate", "EnergyRate"},
        {"voltage", "Voltage"}};
    for (const auto& [ours, theirs] : figures) {
        if (const std::optional<double> figure = knownNumber(properties, theirs)) {
            facts.insert(QLatin1String(ours), *figure);
        }
    }
    if (const std::optional<double> cycles = knownNumber(properties, "ChargeCycles")) {
        facts.insert(QLatin1String("cycles"), static_cast<qlonglong>(*cycles));
    }
    return facts;
}

} // namespace

bool powersTheMachine(const QVariantMap& properties) {
    return number(properties, "Type") == typeBattery && flag(properties, "PowerSupply", false);
}

BatteryReading readingFromUPower(const QVariantMap& properties) {
    BatteryReading battery;
    battery.isPresent = flag(properties, "IsPresent", true);
    const std::optional<double> state = number(properties, "State");
    battery.isCharging = state == stateCharging;
    battery.isDischarging = state == stateDischarging;
    battery.percentage = number(properties, "Percentage");
    battery.energy = number(properties, "Energy");
    battery.energyFull = knownNumber(properties, "EnergyFull");
    battery.rate = knownNumber(properties, "EnergyRate");
    battery.timeToEmpty = knownNumber(properties, "TimeToEmpty");
    battery.facts = factsFrom(properties);
    return checked(std::move(battery));
}

} // namespace quorvane
