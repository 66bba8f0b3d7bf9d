#include "mode/RegisteredDefaults.h"

#include "mode/SettingsList.h"

namespace quorvane {

std::vector<QVariantMap> registeredDefaults() {
    std::vector<QVariantMap> groups(static_cast<std::size_t>(Setting::Group::Never));
    for (const Setting& each : settingsList()) {
        if (each.group != Setting::Group::Never) {
            groups[static_cast<std::size_t>(each.group)].insert(QString::fromLatin1(each.key),
                                                                each.standardValue());
        }
    }
    return groups;
}

} // namespace quorvane
