#pragma once

#include "platform/Settings.h"

#include <QStandardPaths>

#include <map>
#include <memory>

namespace quorvane {

class LogSink;
class SettingsFile;

/// Settings domains as INI files of one folder: the domain "com.example.app" is the file
/// com.example.app.conf there. Main thread only.
class LinuxSettings final : public Settings {
  public:
    /// The folder, by default $XDG_CONFIG_HOME or ~/.config, need not exist.
    explicit LinuxSettings(LogSink& log, QString folder = QStandardPaths::writableLocation(
                                             QStandardPaths::GenericConfigLocation));
    ~LinuxSettings() override;
    LinuxSettings(const LinuxSettings&) = delete;
    LinuxSettings& operator=(const LinuxSettings&) = delete;

    SettingsDomain& domain(const QString& name) override;

  private:
    LogSink& log_;
    const QString folder_;
    std::map<QString, std::unique_ptr<SettingsFile>> domains_;
};

} // namespace quorvane
