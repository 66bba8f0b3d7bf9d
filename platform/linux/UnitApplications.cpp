#include "platform/linux/UnitApplications.h"

#include "platform/linux/BoundedFile.h"

#include <QDir>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

constexpr qsizetype longestProcessList = 16384;

// The fourth field of /proc/PID/stat; the second one, the name, may hold blanks and parentheses.
std::int32_t parentOf(std::int32_t pid) {
    const QByteArray stat =
        readBounded(QStringLiteral("/proc/%1/stat").arg(pid), 1024).value_or(QByteArray());
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1).toInt();
}

bool contains(const std::vector<std::int32_t>& processes, std::int32_t pid) {
    return std::find(processes.cbegin(), processes.cend(), pid) != processes.cend();
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

/// Also one level down: the services of one template are in a slice of theirs.
QStringList UnitApplications::units() const {
    if (folder_.isEmpty()) {
        return {};
    }
    const QStringList names{QStringLiteral("app-*.scope"), QStringLiteral("app-*.service")};
    QStringList units = QDir(folder_).entryList(names, QDir::Dirs, QDir::Name);
    const QStringList slices =
        QDir(folder_).entryList({QStringLiteral("app-*.slice")}, QDir::Dirs, QDir::Name);
    for (const QString& slice : slices) {
        const QDir folder(folder_ + QLatin1Char('/') + slice);
        for (const QString& unit : folder.entryList(names, QDir::Dirs, QDir::Name)) {
            units.append(slice + QLatin1Char('/') + unit);
        }
    }
    return units;
}

std::vector<RunningApplication>
UnitApplications::without(const std::vector<RunningApplication>& known, const Identify& identify) {
    std::map<QString, Processes> processesByUnit;
    std::map<std::int32_t, QString> owners; // of processes: their unit; empty: one of `known`
    for (const QString& unit : units()) {
        processesByUnit[unit] = processesOf(unit);
        for (const std::int32_t pid : processesByUnit[unit]) {
            owners[pid] = unit;
        }
    }
    for (const RunningApplication& application : known) {
        owners[application.processIdentifier].clear();
    }
    std::vector<RunningApplication> applications;
    QStringList seen;
    for (const auto& [unit, processes] : processesByUnit) {
        const bool isPartOfAnother = std::any_of(
            processes.cbegin(), processes.cend(), [&owners, &unit = unit](std::int32_t pid) {
                const auto parent = owners.find(parentOf(pid));
                return owners[pid] != unit || (parent != owners.cend() && parent->second != unit);
            });
        const auto main = std::find_if(processes.cbegin(), processes.cend(),
                                       [&processes = processes](std::int32_t pid) {
                                           return !contains(processes, parentOf(pid));
                                       });
        if (main != processes.cend() && !isPartOfAnother) {
            applications.push_back(identified(unit, *main, identify));
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
