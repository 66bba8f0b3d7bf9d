#include "apps/helper/PolicyBoost.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr QLatin1String policiesFolder("devices/system/cpu/cpufreq");
constexpr QLatin1String policyPrefix("policy");

// "devices/system/cpu/cpufreq/policy12/boost": a journal's line may say anything.
bool isPolicyBoost(const QString& attribute) {
    const QString start = policiesFolder + QLatin1Char('/') + policyPrefix;
    const QLatin1String end("/boost");
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
    for (const QString& policy : attributes().names(policiesFolder, policyPrefix)) {
        const QString attribute =
            policiesFolder + QLatin1Char('/') + policy + QLatin1String("/boost");
        if (isPolicyBoost(attribute) && attributes().read(attribute)) {
            all.append({attribute, QStringLiteral("0")});
        }
    }
    return all;
}

bool PolicyBoost::accepts(const AttributeValue& pair) const {
    return isPolicyBoost(pair.attribute) &&
           (pair.value == QLatin1String("0") || pair.value == QLatin1String("1"));
}

} // namespace quorvane
