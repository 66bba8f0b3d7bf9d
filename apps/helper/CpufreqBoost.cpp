#include "apps/helper/CpufreqBoost.h"

#include "platform/linux/common/TurboSwitchPaths.h"

namespace quorvane {

QString CpufreqBoost::name() const {
    return QStringLiteral("cpufreq/boost");
}

QList<AttributeValue> CpufreqBoost::slowing() const {
    return {{turboswitch::globalBoost, QStringLiteral("0")}};
}

bool CpufreqBoost::accepts(const AttributeValue& pair) const {
    return pair.attribute == turboswitch::globalBoost && isOnOrOff(pair.value);
}

} // namespace quorvane
