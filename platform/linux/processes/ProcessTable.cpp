#include "platform/linux/ProcessTable.h"

#include <QDir>
#include <QFile>
#include <QList>

#include <algorithm>
#include <dirent.h>

namespace quorvane {

namespace {

// Counted from the state, which is field 3 of proc(5).
namespace statField {

constexpr qsizetype state = 0;
constexpr qsizetype parent = 1;
constexpr qsizetype group = 2;
constexpr qsizetype session = 3;
constexpr qsizetype terminal = 4;
constexpr qsizetype startTime = 22 - 3;

} // namespace statField

QByteArray textOfProcFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString pathInProc(const QString& procFolder, std::int32_t pid, const char* name) {
    return QStringLiteral("%1/%2/%3").arg(procFolder).arg(pid).arg(QLatin1String(name));
}

bool isApplicationUnitName(const QString& name) {
    return name.startsWith(QLatin1String("app-")) &&
           (name.endsWith(QLatin1String(".scope")) || name.endsWith(QLatin1String(".service")));
}

} // namespace

std::optional<StatPieces> statPieces(const QByteArray& stat) {
    const qsizetype nameBegin = stat.indexOf(" (");
    const qsizetype nameEnd = stat.lastIndexOf(") ");
    if (nameBegin < 0 || nameEnd < nameBegin) {
        return std::nullopt;
    }
    StatPieces pieces{stat.left(nameBegin), stat.mid(nameBegin + 2, nameEnd - nameBegin - 2),
                      stat.mid(nameEnd + 2).split(' ')};
    return pieces.fields.size() > statField::startTime ? std::optional(std::move(pieces))
                                                       : std::nullopt;
}

std::optional<Process> processFromStat(const QByteArray& stat) {
    const std::optional<StatPieces> pieces = statPieces(stat);
    if (!pieces || pieces->fields.at(statField::state) == "Z" ||
        pieces->fields.at(statField::state) == "X") {
        return std::nullopt;
    }
    const QList<QByteArray>& fields = pieces->fields;
    bool areNumbers = true;
    const auto number = [&](const QByteArray& text) {
        bool isNumber = false;
        const qint64 value = text.toLongLong(&isNumber);
        areNumbers = areNumbers && isNumber;
        return value;
    };
    const auto id = [&](qsizetype field) {
        return static_cast<std::int32_t>(number(fields.at(field)));
    };
    Process process;
    process.identity = {static_cast<std::int32_t>(number(pieces->pid)),
                        number(fields.at(statField::startTime))};
    process.parent = id(statField::parent);
    process.group = id(statField::group);
    process.session = id(statField::session);
    process.hasTerminal = id(statField::terminal) != 0;
    process.isStopped = fields.at(statField::state) == "T" || fields.at(statField::state) == "t";
    process.name = pieces->name;
    return areNumbers ? std::optional(process) : std::nullopt;
}

QString applicationUnit(const QByteArray& cgroup) {
    for (const QByteArray& line : cgroup.split('\n')) {
        // "0::/PATH" where there is one hierarchy, "1:name=systemd:/PATH" where there are several
        const QString path = QString::fromUtf8(line).section(QLatin1Char(':'), 2);
        QStringList folders = path.split(QLatin1Char('/'));
        while (!folders.isEmpty() && !isApplicationUnitName(folders.constLast())) {
            folders.removeLast();
        }
        if (!folders.isEmpty()) {
            return folders.join(QLatin1Char('/'));
        }
    }
    return {};
}

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
    return processFromStat(textOfProcFile(pathInProc(procFolder, pid, "stat")));
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
    const QByteArray link = QFile::encodeName(pathInProc(procFolder_, pid, "exe"));
    QString path = QFile::symLinkTarget(QFile::decodeName(link));
    constexpr QLatin1String replaced(" (deleted)"); // by an update, while it runs
    if (path.endsWith(replaced)) {
        path.chop(replaced.size());
    }
    return path;
}

QString ProcessTable::executableOf(std::int32_t pid) const {
    return programOf(pid).section(QLatin1Char('/'), -1);
}

QString ProcessTable::applicationUnitOf(std::int32_t pid) const {
    return applicationUnit(fileOf(pid, "cgroup"));
}

bool ProcessTable::belongsTo(std::int32_t pid, std::uint32_t user) const {
    // "Uid:\tREAL\tEFFECTIVE\tSAVED\tFILES". The owner of the folder would be root for every
    // process that does not let itself be looked into.
    constexpr char label[] = "\nUid:\t";
    const QByteArray status = fileOf(pid, "status");
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
    return fileOf(pid, "cmdline").startsWith('-');
}

QByteArray ProcessTable::fileOf(std::int32_t pid, const char* name) const {
    return textOfProcFile(pathInProc(procFolder_, pid, name));
}

} // namespace quorvane
