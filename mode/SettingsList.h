#pragma once

#include <QVariant>

#include <span>
#include <variant>

namespace quorvane {

/// One setting: everything about it that is not the work of the class that it belongs to.
struct Setting {
    /// With which others its standard value is registered at every start; the groups are registered
    /// in this order. What is never registered reads as false, 0 or nothing until it is stored.
    enum class Group { EmailAndIcon, Mode, Modules, Others, Never };

    const char* key;
    Group group;

    /// What holds without a line in the settings file. Its type is the setting's.
    std::variant<bool, int, unsigned, const char*> standard;

    /// What a user may write: alternatives as "0|1|2", or the range or unit in a word.
    const char* values = "";

    /// What it does, in one line; empty for what no user has to know.
    const char* help = "";

    /// Of a module's own switch: minutes of battery that one minute of the mode saves with it.
    double minutesSaved = 0.0;

    [[nodiscard]] QVariant standardValue() const;

    [[nodiscard]] bool isForUsers() const { return *help != '\0'; }
};

/// All settings, in the order in which users read of them. The registered values, the estimate of
/// the minutes saved and `quorvane --help` come from here; the table in README.md is held to it by
/// a test. Not in it: what the program notes for itself, such as "WasEnabledOnQuit". Any thread.
[[nodiscard]] std::span<const Setting> settingsList();

} // namespace quorvane
