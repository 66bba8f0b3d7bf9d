#include "apps/helper/PlatformProfile.h"

namespace quorvane {

namespace {

constexpr QLatin1String profileAttribute("firmware/acpi/platform_profile");
constexpr QLatin1String choicesAttribute("firmware/acpi/platform_profile_choices");

} // namespace

QString PlatformProfile::name() const {
    return QStringLiteral("platform_profile");
}

// "quiet" is what some makers have instead; it lowers the power limits as well.
QList<AttributeValue> PlatformProfile::slowing() const {
    for (const char* const profile : {"low-power", "quiet"}) {
        const AttributeValue wanted{profileAttribute, QLatin1String(profile)};
        if (accepts(wanted)) {
            return {wanted};
        }
    }
    return {};
}

bool PlatformProfile::accepts(const AttributeValue& pair) const {
    const QString choices = attributes().read(choicesAttribute).value_or(QString());
    return pair.attribute == profileAttribute &&
           choices.split(QLatin1Char(' '), Qt::SkipEmptyParts).contains(pair.value);
}

} // namespace quorvane
