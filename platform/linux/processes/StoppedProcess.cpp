#include "platform/linux/processes/StoppedProcess.h"

#include <QJsonObject>

namespace quorvane {

namespace {

constexpr QLatin1String processKind("process");
constexpr QLatin1String applicationMember("application");
constexpr QLatin1String groupMember("group");

} // namespace

bool isProcessEntry(const JournalEntry& entry) {
    return entry.kind == processKind;
}

JournalEntry processEntry(const StoppedProcess& process, const JournalWriter& writer) {
    return {processKind, QString::number(process.identity.pid), process.identity.startTime,
            QJsonObject{{applicationMember, process.application}, {groupMember, process.asGroup}},
            writer};
}

std::optional<StoppedProcess> stoppedProcess(const JournalEntry& entry) {
    constexpr qint64 none = -1;
    bool isNumber = false;
    const QJsonObject set = entry.set.toObject();
    const StoppedProcess process{{entry.key.toInt(&isNumber), entry.found.toInteger(none)},
                                 set.value(applicationMember).toInt(),
                                 set.value(groupMember).toBool()};
    const bool isComplete = isProcessEntry(entry) && isNumber && process.identity.pid > 1 &&
                            process.identity.startTime >= 0 && process.application > 1;
    return isComplete ? std::optional(process) : std::nullopt;
}

} // namespace quorvane
