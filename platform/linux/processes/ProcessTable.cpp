#include "platform/linux/processes/ProcessTable.h"

#include "platform/linux/common/ProcessStat.h"
#include "platform/linux/processes/ApplicationUnit.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <dirent.h>
#include <utility>

namespace quorvane {

namespace {

/// Nothing when it has ended.
std::optional<Process> running(ProcessStat stat) {
    if (stat.hasEnded()) {
        return std::nullopt;
    }
    Process process;
    process.identity = {stat.pid, stat.startTime};
    process.parent = stat.parent;
    process.group = stat.group;
    process.session = stat.session;
    process.hasTerminal = stat.terminal != 0;
    process.isStopped = stat.isStopped();
    process.name = std::move(stat.name);
    return process;
}

} // namespace

ProcessTable ProcessTable::read(const QString& procFolder) {
    ProcessTable table;
    table.procFolder_ = procFolder;
    DIR* const folder = ::opendir(QFile::encodeName(procFolder).constData());
    if (folder == nullptr) {
        return table;
    }
    while (const dirent* const entry = ::readdir(folder)) { // NOLINT(concurrency-mt-unsafe)
        bool isNumber = false;
        const std::int32_t pid =
            QByteArray(static_cast<const char*>(entry->d_name)).toInt(&isNumber);
        if (!isNumber) {
            continue;
        }
        if (std::optional<Process> process = look(pid, procFolder)) {
            table.processes_.emplace(pid, std::move(*process));
        }
    }
    ::closedir(folder);
    return table;
}

std::optional<Process> ProcessTable::look(std::int32_t pid, const QString& procFolder) {
    std::optional<ProcessStat> stat = ProcessStat::read(pid, procFolder);
    return stat ? running(*std::move(stat)) : std::nullopt;
}

const Process* ProcessTable::find(std::int32_t pid) const {
    const auto found = processes_.find(pid);
    return found == processes_.end() ? nullptr : &found->second;
}

bool ProcessTable::holds(const ProcessIdentity& identity) const {
    const Process* const process = find(identity.pid);
    return process != nullptr && process->identity == identity;
}

std::vector<std::int32_t> ProcessTable::ancestorsOf(std::int32_t pid) const {
    std::vector<std::int32_t> ancestors;
    const Process* process = find(pid);
    // The table is not read in one instant: ids that are used again may close a circle.
    while (process != nullptr && process->parent > 0 && process->parent != pid &&
           std::find(ancestors.begin(), ancestors.end(), process->parent) == ancestors.end()) {
        ancestors.push_back(process->parent);
        process = find(process->parent);
    }
    return ancestors;
}

QString ProcessTable::programOf(std::int32_t pid) const {
    return filesOf(pid).program();
}

QString ProcessTable::executableOf(std::int32_t pid) const {
    return programOf(pid).section(QLatin1Char('/'), -1);
}

QByteArray ProcessTable::applicationUnitOf(std::int32_t pid) const {
    return ApplicationUnit::ofControlGroups(filesOf(pid).controlGroups()).controlGroup();
}

bool ProcessTable::belongsTo(std::int32_t pid, std::uint32_t user) const {
    // "Uid:\tREAL\tEFFECTIVE\tSAVED\tFILES". The owner of the folder would be root for every
    // process that does not let itself be looked into.
    constexpr char label[] = "\nUid:\t";
    const QByteArray status = filesOf(pid).status();
    const qsizetype begin = status.indexOf(label);
    if (begin < 0) {
        return false;
    }
    const qsizetype first = begin + static_cast<qsizetype>(sizeof label) - 1;
    const QList<QByteArray> users =
        status.mid(first, status.indexOf('\n', first) - first).split('\t');
    const QByteArray wanted = QByteArray::number(user);
    return users.size() >= 2 && users.at(0) == wanted && users.at(1) == wanted;
}

bool ProcessTable::isLoginShell(std::int32_t pid) const {
    return filesOf(pid).commandLine().startsWith('-');
}

} // namespace quorvane
