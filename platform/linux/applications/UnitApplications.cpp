#include "platform/linux/applications/UnitApplications.h"

#include "platform/linux/common/BoundedFile.h"
#include "platform/linux/processes/ApplicationUnit.h"
#include "platform/linux/processes/ProcessTable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

constexpr qsizetype longestProcessList = 16384;

using Owners = std::map<std::int32_t, QString>; ///< of processes: their unit; empty: an application

/// The one that has started the unit's others; 0 when there is none, and when the unit is part of
/// another application.
std::int32_t mainProcess(const QString& unit, const std::vector<std::int32_t>& processes,
                         const Owners& owners) {
    std::int32_t main = 0;
    for (const std::int32_t pid : processes) {
        const std::optional<Process> process = ProcessTable::look(pid);
        if (!process) {
            continue; // it has just ended
        }
        const auto parent = owners.find(process->parent);
        const bool isOfTheUnit = parent != owners.cend() && parent->second == unit;
        if (owners.at(pid) != unit || (parent != owners.cend() && !isOfTheUnit)) {
            return 0;
        }
        if (main == 0 && !isOfTheUnit) {
            main = pid;
        }
    }
    return main;
}

} // namespace

UnitApplications::UnitApplications(QString folder) : folder_(std::move(folder)) {}

QString UnitApplications::folderOfTheSession() {
    const QString slice =
        QStringLiteral("/user.slice/user-%1.slice/user@%1.service/app.slice").arg(::getuid());
    for (const char* root :
         {"/sys/fs/cgroup", "/sys/fs/cgroup/unified", "/sys/fs/cgroup/systemd"}) {
        QString folder = QLatin1String(root) + slice;
        if (QFileInfo(folder).isDir()) {
            return folder;
        }
    }
    return {};
}

/// Also one level down: the services of one template are in a slice of theirs. Snap's are left out:
/// what they hold is told by its windows only.
QStringList UnitApplications::units() const {
    if (folder_.isEmpty()) {
        return {};
    }
    const auto unitsIn = [](const QString& folder) {
        QStringList names = QDir(folder).entryList(QDir::Dirs, QDir::Name);
        names.removeIf([](const QString& name) {
            return !ApplicationUnit::isMadeByDesktop(QFile::encodeName(name));
        });
        return names;
    };
    QStringList units = unitsIn(folder_);
    const QStringList slices =
        QDir(folder_).entryList({QStringLiteral("app-*.slice")}, QDir::Dirs, QDir::Name);
    for (const QString& slice : slices) {
        for (const QString& unit : unitsIn(folder_ + QLatin1Char('/') + slice)) {
            units.append(slice + QLatin1Char('/') + unit);
        }
    }
    return units;
}

std::vector<RunningApplication>
UnitApplications::without(const std::vector<RunningApplication>& known, const Identify& identify) {
    std::map<QString, Processes> processesByUnit;
    Owners owners;
    for (const QString& unit : units()) {
        processesByUnit[unit] = processesOf(unit);
        for (const std::int32_t pid : processesByUnit[unit]) {
            owners[pid] = unit;
        }
    }
    for (const RunningApplication& application : known) {
        if (application.processIdentifier > 0) {
            owners[application.processIdentifier].clear();
        }
    }
    std::vector<RunningApplication> applications;
    QStringList seen;
    for (const auto& [unit, processes] : processesByUnit) {
        if (const std::int32_t main = mainProcess(unit, processes, owners); main != 0) {
            applications.push_back(identified(unit, main, identify));
            seen.append(unit);
        }
    }
    std::erase_if(identified_, [&seen](const auto& one) { return !seen.contains(one.first); });
    return applications;
}

const RunningApplication& UnitApplications::identified(const QString& unit, std::int32_t pid,
                                                       const Identify& identify) {
    RunningApplication& application = identified_[unit];
    if (application.processIdentifier != pid) {
        const ApplicationIdentity::Found found =
            identify(pid).value_or(ApplicationIdentity::Found{});
        application = {pid, found.bundleIdentifier, found.localizedName,
                       ActivationPolicy::Accessory, false};
    }
    return application;
}

UnitApplications::Processes UnitApplications::processesOf(const QString& unit) const {
    const QByteArray text =
        readBounded(folder_ + QLatin1Char('/') + unit + QStringLiteral("/cgroup.procs"),
                    longestProcessList)
            .value_or(QByteArray());
    Processes processes;
    for (const QByteArray& line : text.split('\n')) {
        if (const std::int32_t pid = line.toInt(); pid > 0) {
            processes.push_back(pid);
        }
    }
    return processes;
}

} // namespace quorvane
