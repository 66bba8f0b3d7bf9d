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

std::vector<RunningApplication>
UnitApplications::without(const std::vector<RunningApplication>& known, const Identify& identify) {
    std::vector<RunningApplication> applications;
    QStringList seen;
    const QStringList units = folder_.isEmpty()
                                  ? QStringList()
                                  : QDir(folder_).entryList({QStringLiteral("app-*.scope"),
                                                             QStringLiteral("app-*.service")},
                                                            QDir::Dirs, QDir::Name);
    for (const QString& unit : units) {
        const std::vector<std::int32_t> processes = processesOf(unit);
        const auto main =
            std::find_if(processes.cbegin(), processes.cend(), [&processes](std::int32_t pid) {
                return !contains(processes, parentOf(pid));
            });
        const bool isKnown =
            std::any_of(known.cbegin(), known.cend(), [&processes](const auto& application) {
                return contains(processes, application.processIdentifier);
            });
        if (main == processes.cend() || isKnown) {
            continue;
        }
        applications.push_back(identified(unit, *main, identify));
        seen.append(unit);
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

std::vector<std::int32_t> UnitApplications::processesOf(const QString& unit) const {
    const QByteArray text =
        readBounded(folder_ + QLatin1Char('/') + unit + QStringLiteral("/cgroup.procs"),
                    longestProcessList)
            .value_or(QByteArray());
    std::vector<std::int32_t> processes;
    for (const QByteArray& line : text.split('\n')) {
        if (const std::int32_t pid = line.toInt(); pid > 0) {
            processes.push_back(pid);
        }
    }
    return processes;
}

} // namespace quorvane
