#include "apps/helper/CpufreqBoost.h"

namespace quorvane {

namespace {

constexpr QLatin1String globalBoost("devices/system/cpu/cpufreq/boost");

} // namespace

QString CpufreqBoost::name() const {
    return QStringLiteral("cpufreq/boost");
}

QList<AttributeValue> CpufreqBoost::slowing() const {
    return {{globalBoost, QStringLiteral("0")}};
}

bool CpufreqBoost::accepts(const AttributeValue& pair) const {
    return pair.attribute == globalBoost &&
           (pair.value == QLatin1String("0") || pair.value == QLatin1String("1"));
}

} // namespace quorvane
