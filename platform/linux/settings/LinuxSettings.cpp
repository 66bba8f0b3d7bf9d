#include "platform/linux/settings/LinuxSettings.h"

#include "platform/linux/settings/SettingsFile.h"

#include <utility>

namespace quorvane {

LinuxSettings::LinuxSettings(LogSink& log, QString folder)
    : log_(log), folder_(std::move(folder)) {}

LinuxSettings::~LinuxSettings() = default;

SettingsDomain& LinuxSettings::domain(const QString& name) {
    std::unique_ptr<SettingsFile>& file = domains_[name];
    if (!file) {
        file = std::make_unique<SettingsFile>(
            folder_ + QLatin1Char('/') + name + QLatin1String(".conf"), log_);
    }
    return *file;
}

} // namespace quorvane
