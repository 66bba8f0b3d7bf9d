#include "platform/linux/processes/LinuxProcesses.h"

#include "platform/linux/processes/ProcessSignals.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

// A program that starts others without end is stopped within a few looks, because what starts them
// is stopped first.
constexpr int mostRounds = 100;

// Until all threads of a process stand still, it may still start others. One that waits for a disk
// or a server does not stand still before that has answered.
constexpr int mostWaits = 50;
constexpr std::chrono::milliseconds waitForStandstill{1};

template <class Container, class Condition>
bool hasAny(const Container& container, Condition condition) {
    return std::any_of(container.begin(), container.end(), condition);
}

} // namespace

LinuxProcesses::LinuxProcesses(PuttingBackJournal& journal, LogSink& log,
                               const QString& guardProgram)
    : journal_(journal), log_(log), guard_(guardProgram) {}

void LinuxProcesses::refuse(std::int32_t pid, const QString& reason) {
    log_.write(
        QStringLiteral("The application with process %1 is not stopped: %2").arg(pid).arg(reason));
}

void LinuxProcesses::stop(std::int32_t pid) {
    Stopping stopping;
    int rounds = 0;
    int waits = 0;
    Step step = Step::Found;
    while (step == Step::Found || step == Step::Waiting) {
        if (rounds == mostRounds) {
            log_.write(QStringLiteral("The application with process %1 starts processes faster "
                                      "than they can be stopped: some of them still run")
                           .arg(pid));
            break;
        }
        if (waits == mostWaits) {
            break; // the signals are on their way
        }
        step = stopWhatAppeared(pid, stopping);
        if (step == Step::Waiting) {
            ++waits;
            std::this_thread::sleep_for(waitForStandstill);
        } else {
            ++rounds;
        }
    }
    dismissIdleGuard();
}

/// One look at all processes, and the signals for those that are not stopped yet.
LinuxProcesses::Step LinuxProcesses::stopWhatAppeared(std::int32_t pid, Stopping& stopping) {
    const ProcessTable table = ProcessTable::read();
    const ProtectedProcesses protectedOnes(table, ::getpid(), ::getuid());
    const ApplicationProcesses application(
        table, pid, protectedOnes, applications_ ? applications_() : std::set<std::int32_t>());
    if (stopping.main.pid == 0 && !begin(application, table, pid, stopping)) {
        return Step::Failed;
    }
    if (!application.refusal().isEmpty() || !table.holds(stopping.main)) {
        resume(pid); // it has ended meanwhile: nobody would come back for the rest
        return Step::Failed;
    }
    const bool asGroup =
        application.hasGroupOfItsOwn() && pid != ::getpgrp() &&
        !hasAny(application.parentsFirst(), [&](const Process& each) {
            return each.group == pid && stopping.stoppedByOthers.contains(each.identity);
        });
    const std::vector<StoppedProcess> found = appeared(application, stopping, asGroup);
    if (found.empty()) {
        const bool allStand = !hasAny(application.parentsFirst(), [&](const Process& each) {
            return !each.isStopped && !stopping.stoppedByOthers.contains(each.identity);
        });
        return allStand ? Step::Standstill : Step::Waiting;
    }
    if (!writeDown(found)) {
        refuse(pid, QStringLiteral("what would have to be put back cannot be written down"));
        resume(pid); // half an application is of no use to anybody
        return Step::Failed;
    }
    stopping.asGroup = stopping.asGroup || asGroup;
    sendStop(application, found, asGroup);
    return Step::Found;
}

/// Returns false, with a log line, when the application is not to be stopped at all.
bool LinuxProcesses::begin(const ApplicationProcesses& application, const ProcessTable& table,
                           std::int32_t pid, Stopping& stopping) {
    if (!application.refusal().isEmpty()) {
        refuse(pid, application.refusal());
        return false;
    }
    if (const int error = guard_.post(); error != 0) {
        refuse(pid, QStringLiteral("nobody would resume it after a crash, the guard cannot be "
                                   "started: %1")
                        .arg(QString::fromLocal8Bit(std::strerror(error))));
        return false;
    }
    std::erase_if(stopped_,
                  [&](const StoppedProcess& each) { return !table.holds(each.identity); });
    stopping.main = table.find(pid)->identity;
    for (const Process& each : application.parentsFirst()) {
        if (each.isStopped && !isStoppedByUs(each.identity)) {
            stopping.stoppedByOthers.insert(each.identity);
        }
    }
    return true;
}

/// The processes that are not on record for the application yet, parents first; also the leader of
/// the group when it is not on record as one. A process that stands still when it is first seen
/// has been started by one of the group while that was stopped, or somebody else has stopped it.
std::vector<StoppedProcess> LinuxProcesses::appeared(const ApplicationProcesses& application,
                                                     Stopping& stopping, bool asGroup) const {
    std::vector<StoppedProcess> found;
    for (const Process& each : application.parentsFirst()) {
        if (each.isStopped && !stopping.asGroup && !isStoppedByUs(each.identity)) {
            stopping.stoppedByOthers.insert(each.identity);
        }
        const StoppedProcess process{each.identity, stopping.main.pid,
                                     asGroup && each.identity == stopping.main};
        if (!stopping.stoppedByOthers.contains(each.identity) && !isOnRecord(process)) {
            found.push_back(process);
        }
    }
    return found;
}

bool LinuxProcesses::isOnRecord(const StoppedProcess& process) const {
    return hasAny(stopped_, [&](const StoppedProcess& each) {
        return each.isSameAs(process) && (each.asGroup || !process.asGroup);
    });
}

bool LinuxProcesses::isStoppedByUs(const ProcessIdentity& identity) const {
    return hasAny(stopped_, [&](const StoppedProcess& each) { return each.identity == identity; });
}

bool LinuxProcesses::writeDown(const std::vector<StoppedProcess>& processes) {
    const bool isWritten = journal_.update([&](PuttingBackJournal::Entries& entries) {
        for (const StoppedProcess& process : processes) {
            const JournalEntry entry = processEntry(process, journal_.self());
            const auto known =
                std::find_if(entries.begin(), entries.end(), [&](const JournalEntry& each) {
                    if (each.key != entry.key || each.writer != entry.writer) {
                        return false; // the quick way past most of them
                    }
                    const std::optional<StoppedProcess> other = stoppedProcess(each);
                    return other && other->isSameAs(process);
                });
            known == entries.end() ? entries.push_back(entry) : void(*known = entry);
        }
    });
    if (!isWritten) {
        return false;
    }
    for (const StoppedProcess& process : processes) {
        const auto known =
            std::find_if(stopped_.begin(), stopped_.end(),
                         [&](const StoppedProcess& each) { return each.isSameAs(process); });
        known == stopped_.end() ? stopped_.push_back(process) : void(*known = process);
    }
    return true;
}

void LinuxProcesses::sendStop(const ApplicationProcesses& application,
                              const std::vector<StoppedProcess>& processes, bool asGroup) {
    bool isGroupSignalled = false;
    for (const Process& each : application.parentsFirst()) {
        const bool isFound = hasAny(processes, [&](const StoppedProcess& process) {
            return process.identity == each.identity;
        });
        if (!isFound) {
            continue;
        }
        const std::int32_t main = processes.front().application;
        if (!asGroup || each.group != main) {
            sendSignal(each.identity, SIGSTOP);
        } else if (!std::exchange(isGroupSignalled, true)) {
            const auto leader =
                std::find_if(application.parentsFirst().begin(), application.parentsFirst().end(),
                             [main](const Process& process) { return process.pid() == main; });
            sendSignalToGroupOf(leader->identity, SIGSTOP);
        }
    }
}

void LinuxProcesses::resume(std::int32_t pid) {
    resumeAll([pid](const StoppedProcess& process) { return process.application == pid; });
}

void LinuxProcesses::putBack() {
    resumeAll([](const StoppedProcess&) { return true; });
}

/// Also when the journal cannot be read, as far as this process knows by itself.
void LinuxProcesses::resumeAll(const Selection& isWanted) {
    std::vector<StoppedProcess> staying;
    std::vector<StoppedProcess> ending = onRecord(staying);
    const auto firstStaying = std::stable_partition(ending.begin(), ending.end(), isWanted);
    staying.insert(staying.end(), firstStaying, ending.end());
    ending.erase(firstStaying, ending.end());

    const auto stays = [&staying](const StoppedProcess& process) {
        return hasAny(
            staying, [&](const StoppedProcess& each) { return each.identity == process.identity; });
    };
    // What was stopped last was a child, and is resumed first.
    std::for_each(ending.rbegin(), ending.rend(), [&](const StoppedProcess& process) {
        if (!stays(process)) {
            sendSignal(process.identity, SIGCONT);
        }
    });
    // What the leader's group got in the moment before it stood still is in nobody's record.
    for (const StoppedProcess& process : ending) {
        const bool isShared = hasAny(staying, [&](const StoppedProcess& each) {
            const std::optional<Process> now = ProcessTable::look(each.identity.pid);
            return now && now->group == process.identity.pid;
        });
        if (process.asGroup && !isShared) {
            sendSignalToGroupOf(process.identity, SIGCONT);
        }
    }
    strikeOff(isWanted);
    dismissIdleGuard();
}

/// What this process or a dead one has stopped, in the order in which it was; `ofOthers` gets what
/// other living ones have.
std::vector<StoppedProcess> LinuxProcesses::onRecord(std::vector<StoppedProcess>& ofOthers) {
    std::vector<StoppedProcess> record;
    const auto entries = journal_.entries();
    for (const JournalEntry& entry : entries.value_or(PuttingBackJournal::Entries())) {
        if (const std::optional<StoppedProcess> process = stoppedProcess(entry)) {
            (journal_.mayAlter(entry) ? record : ofOthers).push_back(*process);
        }
    }
    for (const StoppedProcess& process : stopped_) {
        if (std::find(record.begin(), record.end(), process) == record.end()) {
            record.push_back(process);
        }
    }
    return record;
}

void LinuxProcesses::strikeOff(const Selection& isWanted) {
    std::erase_if(stopped_, isWanted);
    // What cannot be struck off now leads to nothing later: a process that runs is not harmed by
    // being resumed.
    [[maybe_unused]] const bool isDone = journal_.update([&](PuttingBackJournal::Entries& entries) {
        std::erase_if(entries, [&](const JournalEntry& entry) {
            if (!isProcessEntry(entry) || !journal_.mayAlter(entry)) {
                return false;
            }
            const std::optional<StoppedProcess> process = stoppedProcess(entry);
            if (!process) {
                log_.write(QStringLiteral("A journal entry tells no process to resume and is "
                                          "struck off: %1")
                               .arg(QString::fromUtf8(journalLine(entry))));
            }
            return !process || isWanted(*process);
        });
    });
}

void LinuxProcesses::dismissIdleGuard() {
    if (stopped_.empty()) {
        guard_.dismiss();
    }
}

} // namespace quorvane
