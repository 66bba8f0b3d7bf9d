#include "platform/linux/processes/ProcessSignals.h"

#include <csignal>
#include <optional>
#include <sys/syscall.h>
#include <unistd.h>

namespace quorvane {

namespace {

bool isStill(const ProcessIdentity& process) {
    const std::optional<Process> now = ProcessTable::look(process.pid);
    return now && now->identity == process;
}

// To the kernel, 0 is the own group and a negative number a group or everybody.
bool maySignal(std::int32_t pid) {
    return pid > 1 && pid != ::getpid();
}

// By number, because older C libraries have no functions for these.
int openProcess(std::int32_t pid) {
    return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
}

bool signalThrough(int descriptor, int signal) {
    return ::syscall(SYS_pidfd_send_signal, descriptor, signal, nullptr, 0) == 0;
}

} // namespace

bool sendSignal(const ProcessIdentity& process, int signal) {
    if (!maySignal(process.pid)) {
        return false;
    }
    const int descriptor = openProcess(process.pid);
    if (descriptor < 0) { // the process has ended, or the kernel is older than 5.3
        return isStill(process) && ::kill(process.pid, signal) == 0;
    }
    // Compared behind the opening: from there on, no other process can be meant.
    const bool isSent = isStill(process) && signalThrough(descriptor, signal);
    ::close(descriptor);
    return isSent;
}

bool sendSignalToGroupOf(const ProcessIdentity& leader, int signal) {
    if (!maySignal(leader.pid) || leader.pid == ::getpgrp()) {
        return false;
    }
    const std::optional<Process> now = ProcessTable::look(leader.pid);
    return now && now->identity == leader && now->group == leader.pid &&
           ::kill(-leader.pid, signal) == 0;
}

} // namespace quorvane
