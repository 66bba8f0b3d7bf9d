#include "apps/helper/IntelPstateTurbo.h"

#include "platform/linux/common/TurboSwitchPaths.h"

namespace quorvane {

QString IntelPstateTurbo::name() const {
    return QStringLiteral("intel_pstate/no_turbo");
}

QList<AttributeValue> IntelPstateTurbo::slowing() const {
    return {{turboswitch::intelNoTurbo, QStringLiteral("1")}};
}

bool IntelPstateTurbo::accepts(const AttributeValue& pair) const {
    return pair.attribute == turboswitch::intelNoTurbo && isOnOrOff(pair.value);
}

} // namespace quorvane
