#include "apps/helper/PolicyBoost.h"

#include "platform/linux/common/TurboSwitchPaths.h"

#include <algorithm>

namespace quorvane {

namespace {

// "devices/system/cpu/cpufreq/policy12/boost": a journal's line may say anything.
bool isPolicyBoost(const QString& attribute) {
    const QString start = turboswitch::policyFolder + QLatin1Char('/') + turboswitch::policyPrefix;
    const QString end = QLatin1Char('/') + turboswitch::policyBoost;
    if (!attribute.startsWith(start) || !attribute.endsWith(end)) {
        return false;
    }
    const QString number =
        attribute.mid(start.size(), attribute.size() - start.size() - end.size());
    return !number.isEmpty() && std::all_of(number.cbegin(), number.cend(), [](QChar each) {
        return each >= QLatin1Char('0') && each <= QLatin1Char('9');
    });
}

} // namespace

QString PolicyBoost::name() const {
    return QStringLiteral("cpufreq/policy*/boost");
}

QList<AttributeValue> PolicyBoost::slowing() const {
    QList<AttributeValue> all;
    for (const QString& policy :
         attributes().names(turboswitch::policyFolder, turboswitch::policyPrefix)) {
        const QString attribute = turboswitch::policyFolder + QLatin1Char('/') + policy +
                                  QLatin1Char('/') + turboswitch::policyBoost;
        if (isPolicyBoost(attribute) && attributes().read(attribute)) {
            all.append({attribute, QStringLiteral("0")});
        }
    }
    return all;
}

bool PolicyBoost::accepts(const AttributeValue& pair) const {
    return isPolicyBoost(pair.attribute) && isOnOrOff(pair.value);
}

} // namespace quorvane
