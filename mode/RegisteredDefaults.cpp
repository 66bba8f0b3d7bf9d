#include "core/RegisteredDefaults.h"

namespace quorvane {

namespace {

QVariantMap emailAndIcon() {
    return {
        {QStringLiteral("didShowEmailSheet"), 1},
        {QStringLiteral("userDidSetEmail"), false},
        {QStringLiteral("usersEmail"), QString()},
        {QStringLiteral("canContactUser"), 0},
        {QStringLiteral("successfullySubmittedEmail"), false},
        {QStringLiteral("QuorvaneIconSetting"), 0U},
    };
}

QVariantMap mode() {
    return {{QStringLiteral("QuorvaneActive"), false}};
}

QVariantMap modules() {
    return {
        {QStringLiteral("TurboModuleActivated"), true},
        {QStringLiteral("BrightnessModuleActivated"), true},
        {QStringLiteral("ServicesModuleActivated"), false},
        {QStringLiteral("TopAppsModuleActivated"), true},
        {QStringLiteral("AppNapModuleActivated"), false},
    };
}

QVariantMap settings() {
    return {
        {QStringLiteral("BatteryThreshold"), 70},
        {QStringLiteral("QuorvaneAutoStartSetting"), 1U},
        {QStringLiteral("MenuBarDisplayMode"), 0},
        {QStringLiteral("AppNapModuleTimeInterval"), 5},
        {QStringLiteral("BrowserModuleControlChrome"), true},
        {QStringLiteral("BrowserModuleControlFirefox"), true},
        {QStringLiteral("BrowserModuleControlSafari"), true},
        {QStringLiteral("BrowserModuleControlOpera"), true},
        {QStringLiteral("ServicesModuleSpotlight"), true},
        {QStringLiteral("ServicesModuleBluetooth"), false},
        {QStringLiteral("TopAppsModuleSensitivity"), 50},
        {QStringLiteral("TopAppsModuleTimeInterval"), 5},
        {QStringLiteral("BrightnessModuleAmount"), 50},
    };
}

} // namespace

std::vector<QVariantMap> registeredDefaults() {
    return {emailAndIcon(), mode(), modules(), settings()};
}

} // namespace quorvane
