#include "platform/linux/power/SysfsPowerSupplies.h"

#include "platform/linux/common/SysfsAttributes.h"

#include <QDir>

#include <algorithm>
#include <cmath>

namespace quorvane {

namespace {

constexpr double perMicro = 1e-6;
constexpr auto powerSupplyClass = "/class/power_supply";

/// What the supplies other than batteries tell together.
struct Adapters {
    bool any = false;
    bool mainsOnline = false;
    bool usbOnline = false;
};

std::optional<double> microUnits(const QString& folder, const char* attribute) {
    const std::optional<qlonglong> number = sysfsNumber(folder, attribute);
    return number ? std::optional(static_cast<double>(*number) * perMicro) : std::nullopt;
}

/// Volts by which charges become energies. The nominal voltage first: the present one falls while
/// the battery drains, and a full charge would seem to shrink with it.
std::optional<double> conversionVoltage(const QString& folder) {
    for (const char* attribute : {"voltage_min_design", "voltage_max_design", "voltage_now"}) {
        const std::optional<double> voltage = microUnits(folder, attribute);
        if (voltage && *voltage > 0.0) {
            return voltage;
        }
    }
    return std::nullopt;
}

/// A driver tells either energies and powers, or charges and currents: Wh or W, whichever it is.
std::optional<double> inWatts(const QString& folder, const char* wattAttribute,
                              const char* ampereAttribute) {
    if (const std::optional<double> watts = microUnits(folder, wattAttribute)) {
        return watts;
    }
    const std::optional<double> amperes = microUnits(folder, ampereAttribute);
    const std::optional<double> voltage = conversionVoltage(folder);
    return amperes && voltage ? std::optional(*amperes * *voltage) : std::nullopt;
}

/// Some drivers tell the current of a battery that drains as a negative one.
std::optional<double> rate(const QString& folder) {
    const std::optional<double> watts = inWatts(folder, "power_now", "current_now");
    return watts ? std::optional(std::fabs(*watts)) : std::nullopt;
}

std::optional<double> timeToEmpty(const QString& folder, const BatteryReading& battery) {
    if (const std::optional<qlonglong> seconds = sysfsNumber(folder, "time_to_empty_now")) {
        return static_cast<double>(*seconds);
    }
    return battery.isDischarging && battery.energy && battery.rate
               ? secondsUntilEmpty(*battery.energy, *battery.rate)
               : std::nullopt;
}

void insertAttribute(QVariantMap& facts, const char* name, const std::optional<QString>& text) {
    if (text) {
        facts.insert(QLatin1String(name), *text);
    }
}

void insertNumber(QVariantMap& facts, const char* name, const std::optional<double>& number) {
    if (number) {
        facts.insert(QLatin1String(name), *number);
    }
}

QVariantMap readFacts(const QString& folder, const BatteryReading& battery) {
    QVariantMap facts;
    insertAttribute(facts, "vendor", sysfsText(folder, "manufacturer"));
    insertAttribute(facts, "model", sysfsText(folder, "model_name"));
    insertAttribute(facts, "serial", sysfsText(folder, "serial_number"));
    insertAttribute(facts, "technology", sysfsText(folder, "technology"));
    insertNumber(facts, "energy", battery.energy);
    insertNumber(facts, "energyFull", battery.energyFull);
    insertNumber(facts, "energyFullDesign",
                 inWatts(folder, "energy_full_design", "charge_full_design"));
    insertNumber(facts, "energyRate", battery.rate);
    insertNumber(facts, "voltage", microUnits(folder, "voltage_now"));
    if (const std::optional<qlonglong> cycles = sysfsNumber(folder, "cycle_count");
        cycles && *cycles > 0) {
        facts.insert(QLatin1String("cycles"), *cycles);
    }
    return facts;
}

BatteryReading readBattery(const QString& folder) {
    BatteryReading battery;
    battery.isPresent = sysfsNumber(folder, "present").value_or(1) != 0;
    const QString status = sysfsText(folder, "status").value_or(QString());
    battery.isCharging = status == QLatin1String("Charging");
    battery.isDischarging = battery.isPresent && status == QLatin1String("Discharging");
    if (const std::optional<qlonglong> percentage = sysfsNumber(folder, "capacity")) {
        battery.percentage = static_cast<double>(*percentage);
    }
    battery.energy = inWatts(folder, "energy_now", "charge_now");
    battery.energyFull = inWatts(folder, "energy_full", "charge_full");
    battery.rate = rate(folder);
    battery = checked(std::move(battery));
    battery.timeToEmpty = timeToEmpty(folder, battery);
    battery.facts = readFacts(folder, battery);
    return checked(std::move(battery));
}

/// Older kernels tell the kind of a USB charger in the type ("USB_PD", "USB_DCP").
bool isUsb(const QString& type) {
    return type.startsWith(QLatin1String("USB")) || type == QLatin1String("Wireless");
}

void addAdapter(Adapters& adapters, const QString& type, const QString& folder) {
    const bool online = sysfsNumber(folder, "online").value_or(0) > 0;
    adapters.any = true;
    adapters.mainsOnline |= online && !isUsb(type);
    adapters.usbOnline |= online && isUsb(type);
}

/// A USB port may be "online" while it feeds a telephone, so it counts only as long as no battery
/// drains. A battery that charges proves external power also where the firmware does not report the
/// charger.
std::optional<bool> isOnBattery(const Adapters& adapters,
                                const std::vector<BatteryReading>& batteries) {
    if (!adapters.any && batteries.empty()) {
        return std::nullopt;
    }
    if (adapters.mainsOnline) {
        return false;
    }
    const bool discharging = std::any_of(batteries.begin(), batteries.end(),
                                         [](const auto& battery) { return battery.isDischarging; });
    const bool charging = std::any_of(batteries.begin(), batteries.end(),
                                      [](const auto& battery) { return battery.isCharging; });
    return discharging || (adapters.any && !adapters.usbOnline && !charging);
}

} // namespace

SysfsPowerSupplies::SysfsPowerSupplies(const QString& sysfsRoot)
    : folder_(sysfsRoot + QLatin1String(powerSupplyClass)) {}

PowerState SysfsPowerSupplies::read() const {
    PowerState state;
    Adapters adapters;
    const QStringList names =
        QDir(folder_).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const QString supply = folder_ + QLatin1Char('/') + name;
        const QString type = sysfsText(supply, "type").value_or(QString());
        const QString scope = sysfsText(supply, "scope").value_or(QString());
        if (scope == QLatin1String("Device")) {
            continue; // the battery of a mouse or a stylus, and what charges it
        }
        if (type == QLatin1String("Battery")) {
            state.batteries.push_back(readBattery(supply));
        } else if (type == QLatin1String("Mains") || isUsb(type)) {
            addAdapter(adapters, type, supply);
        }
    }
    state.onBattery = isOnBattery(adapters, state.batteries);
    return state;
}

} // namespace quorvane
