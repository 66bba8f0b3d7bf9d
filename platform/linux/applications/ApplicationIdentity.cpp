#include "platform/linux/applications/ApplicationIdentity.h"

#include "platform/linux/applications/ApplicationTable.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/applications/LaunchCommand.h"
#include "platform/linux/processes/ApplicationUnit.h"

namespace quorvane {

namespace {

// A browser with a profile of its own says "chromium (/path/of/the/profile)".
QByteArray withoutProfile(const QByteArray& instance) {
    const qsizetype profile = instance.indexOf(" (");
    return profile > 0 ? instance.left(profile) : instance;
}

QString nameOfWindow(const WindowNames& window) {
    return QString::fromUtf8(window.windowClass.isEmpty() ? window.instance : window.windowClass);
}

} // namespace

ApplicationIdentity::ApplicationIdentity(DesktopEntries& entries, ApplicationTable& table)
    : entries_(entries), table_(table) {}

ApplicationIdentity::Found ApplicationIdentity::find(const ProcessFacts& process,
                                                     const WindowNames& window) {
    const QByteArray id = idOf(process, window);
    Found found;
    found.bundleIdentifier = table_.identifierOf(id);
    if (found.bundleIdentifier.isEmpty()) {
        found.bundleIdentifier = QString::fromUtf8(id);
    }
    const DesktopEntry* const entry = entries_.withId(id);
    found.localizedName = entry == nullptr ? QString() : QString::fromUtf8(entry->name);
    if (found.localizedName.isEmpty()) {
        found.localizedName = nameOfWindow(window);
    }
    return found;
}

QByteArray ApplicationIdentity::idOf(const ProcessFacts& process, const WindowNames& window) {
    const QList<QByteArray> possibleIds =
        ApplicationUnit::ofControlGroups(process.controlGroups).possibleIds();
    QByteArray unit = idOfUnit(possibleIds);
    // What is started from a terminal runs in the terminal's unit.
    const bool isInTerminal = isTerminal(unit);
    if (!unit.isEmpty() && !isInTerminal) {
        return unit;
    }
    if (QByteArray id = idOfWindow(window); !id.isEmpty()) {
        return id;
    }
    if (QByteArray id = idOfProgram(process); !id.isEmpty()) {
        return id;
    }
    // The unit of something that is started at login, or that is not installed any more.
    return isInTerminal ? QByteArray() : possibleIds.value(0);
}

bool ApplicationIdentity::isTerminal(const QByteArray& id) {
    const DesktopEntry* const entry = entries_.withId(id);
    return entry != nullptr && entry->isTerminal;
}

QByteArray ApplicationIdentity::knownId(const QByteArray& id) {
    if (const DesktopEntry* const entry = entries_.withId(id)) {
        return entry->id;
    }
    return table_.identifierOf(id).isEmpty() ? QByteArray() : id;
}

QByteArray ApplicationIdentity::idOfUnit(const QList<QByteArray>& possibleIds) {
    for (const QByteArray& possible : possibleIds) {
        if (QByteArray id = knownId(possible); !id.isEmpty()) {
            return id;
        }
    }
    return {};
}

// The instance comes before the class: windows of web applications differ only in it.
QByteArray ApplicationIdentity::idOfWindow(const WindowNames& window) {
    if (QByteArray id = knownId(window.applicationId); !id.isEmpty()) {
        return id;
    }
    const QByteArray instance = withoutProfile(window.instance);
    for (const QByteArray& name : {instance, window.windowClass}) {
        if (const DesktopEntry* const entry = entries_.withStartupWmClass(name)) {
            return entry->id;
        }
    }
    for (const QByteArray& name : {instance, window.windowClass}) {
        if (QByteArray id = knownId(name); !id.isEmpty()) {
            return id;
        }
    }
    return {};
}

QByteArray ApplicationIdentity::idOfProgram(const ProcessFacts& process) {
    const QByteArray executable = fileNameOf(process.executable);
    const QByteArray name = fileNameOf(process.firstArgument);
    const std::array programs = isInterpreter(executable)
                                    ? std::array{name, fileNameOf(process.secondArgument)}
                                    : std::array{executable, name};
    for (const QByteArray& program : programs) {
        if (program.isEmpty() || isInterpreter(program)) {
            continue;
        }
        if (const DesktopEntry* const entry = entries_.withProgram(program)) {
            return entry->id;
        }
        if (!table_.identifierOf(program).isEmpty()) {
            return program;
        }
    }
    return {};
}

} // namespace quorvane
