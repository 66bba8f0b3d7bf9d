#include "apps/helper/IntelPstateTurbo.h"

namespace quorvane {

namespace {

constexpr QLatin1String noTurbo("devices/system/cpu/intel_pstate/no_turbo");

} // namespace

QString IntelPstateTurbo::name() const {
    return QStringLiteral("intel_pstate/no_turbo");
}

QList<AttributeValue> IntelPstateTurbo::slowing() const {
    return {{noTurbo, QStringLiteral("1")}};
}

bool IntelPstateTurbo::accepts(const AttributeValue& pair) const {
    return pair.attribute == noTurbo &&
           (pair.value == QLatin1String("0") || pair.value == QLatin1String("1"));
}

} // namespace quorvane
