#include "mode/SettingsList.h"

#include <array>
#include <type_traits>

namespace quorvane {

namespace {

using enum Setting::Group;

constexpr const char* onOff = "true|false";

// The modules' switches stand in the order in which their savings are added up: in single
// precision, another order gives other sums.
constexpr std::array settings{
    Setting{"QuorvaneActive", Mode, false, onOff, "switches Low Power Mode on and off, now"},
    Setting{"BatteryThreshold", Others, 70, "percent", "the charge at which Quorvane asks or acts"},
    Setting{"QuorvaneAutoStartSetting", Others, 1U, "0|1|2",
            "at the threshold: 0 start at once, 1 ask, 2 do nothing"},
    Setting{"MenuBarShowBatteryIcon", Never, false, onOff,
            "whether the icon is a gauge of the battery"},
    Setting{"MenuBarDisplayMode", Others, 0, "0|1|2",
            "beside the icon: 0 nothing, 1 the percentage, 2 the time that is left"},

    Setting{"TurboModuleActivated", Modules, true, onOff,
            "whether the mode slows the processor down", 0.75},

    Setting{"AppNapModuleActivated", Modules, false, onOff,
            "whether the mode hides applications that you are not using", 0.3},
    Setting{"AppNapModuleTimeInterval", Others, 5, "minutes",
            "after how long in the background it hides them"},

    Setting{"BrightnessModuleActivated", Modules, true, onOff, "whether the mode dims the screen",
            0.15},
    Setting{"BrightnessModuleAmount", Others, 50, "0...100",
            "how bright the dimmed screen is: 0 leaves a tenth of the brightness, 50 half of it, "
            "100 nine tenths"},

    Setting{"ServicesModuleActivated", Modules, false, onOff, "", 0.1},
    Setting{"ServicesModuleSpotlight", Others, true, onOff},
    Setting{"ServicesModuleBluetooth", Others, false, onOff},

    Setting{"BrowserModuleActivated", Never, false, onOff,
            "whether the mode pauses browsers in the background", 0.1},
    Setting{"BrowserModuleControlFirefox", Others, true, onOff, "whether it pauses Firefox"},
    Setting{"BrowserModuleControlChrome", Others, true, onOff,
            "whether it pauses Chromium and its relatives"},
    Setting{"BrowserModuleControlSafari", Others, true, onOff, "whether it pauses GNOME Web"},
    Setting{"BrowserModuleControlOpera", Others, true, onOff},

    Setting{"TopAppsModuleActivated", Modules, true, onOff},
    Setting{"TopAppsModuleSensitivity", Others, 50},
    Setting{"TopAppsModuleTimeInterval", Others, 5},

    Setting{"didShowEmailSheet", EmailAndIcon, 1},
    Setting{"userDidSetEmail", EmailAndIcon, false},
    Setting{"usersEmail", EmailAndIcon, ""},
    Setting{"canContactUser", EmailAndIcon, 0},
    Setting{"successfullySubmittedEmail", EmailAndIcon, false},
    Setting{"QuorvaneIconSetting", EmailAndIcon, 0U},
};

} // namespace

QVariant Setting::standardValue() const {
    return std::visit(
        [](auto value) -> QVariant {
            if constexpr (std::is_same_v<decltype(value), const char*>) {
                return QString::fromLatin1(value);
            } else {
                return value;
            }
        },
        standard);
}

std::span<const Setting> settingsList() {
    return settings;
}

} // namespace quorvane
