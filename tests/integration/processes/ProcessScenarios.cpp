// Processes that tests stop, and one that stops them.
//   process_scenarios chain DEPTH FOLDER    a line of processes; each that is resumed writes the
//                                           state of its child to FOLDER/DEPTH
//   process_scenarios storm                 three threads that start processes without end
//   process_scenarios resident PID GUARD    stops the application and waits to be killed

#include "platform/linux/common/LinuxLog.h"
#include "platform/linux/processes/LinuxProcesses.h"

#include <QCoreApplication>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <time.h>
#include <unistd.h>
#include <vector>

using namespace quorvane;

namespace {

std::string chainFile;
std::string childsStat;

/// In a signal handler: system calls only.
void writeStateOfChild(int /*signal*/) {
    std::array<char, 512> stat{};
    const int source = ::open(childsStat.c_str(), O_RDONLY);
    const ssize_t size = ::read(source, stat.data(), stat.size() - 1);
    ::close(source);
    const char* const nameEnd = size > 0 ? std::strrchr(stat.data(), ')') : nullptr;
    const char state = nameEnd != nullptr ? nameEnd[2] : '?';
    const int target = ::open(chainFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    [[maybe_unused]] const ssize_t written = ::write(target, &state, 1);
    ::close(target);
}

[[noreturn]] void waitForever() {
    for (;;) {
        ::pause();
    }
}

[[noreturn]] void chain(int depth, const std::string& folder) {
    const pid_t child = depth > 0 ? ::fork() : -1;
    if (child == 0) {
        chain(depth - 1, folder);
    }
    if (child > 0) {
        childsStat = "/proc/" + std::to_string(child) + "/stat";
        chainFile = folder + "/" + std::to_string(depth);
        std::signal(SIGCONT, writeStateOfChild);
    }
    std::printf("ready\n");
    std::fflush(stdout);
    waitForever();
}

[[noreturn]] void startProcesses() {
    constexpr timespec pause{0, 4'000'000};
    constexpr timespec life{0, 300'000'000};
    for (;;) {
        if (::fork() == 0) {
            ::nanosleep(&life, nullptr);
            ::_exit(0);
        }
        ::nanosleep(&pause, nullptr);
        while (::waitpid(-1, nullptr, WNOHANG) > 0) {
        }
    }
}

[[noreturn]] void storm() {
    const std::thread second(startProcesses);
    const std::thread third(startProcesses);
    std::printf("ready\n");
    std::fflush(stdout);
    startProcesses();
}

int residentThatStops(const QStringList& arguments) {
    LinuxLog log;
    PuttingBackJournal journal(PuttingBackJournal::defaultPath(), log);
    LinuxProcesses processes(journal, log, arguments.at(3));
    processes.stop(arguments.at(2).toInt());
    std::printf("ready\n");
    std::fflush(stdout);
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const std::string scenario = argc > 1 ? argv[1] : "";
    if (scenario == "chain" && argc == 4) {
        chain(std::atoi(argv[2]), argv[3]); // NOLINT(cert-err34-c)
    }
    if (scenario == "storm") {
        storm();
    }
    if (scenario == "resident" && argc == 4) {
        const QCoreApplication application(argc, argv);
        return residentThatStops(QCoreApplication::arguments());
    }
    return EXIT_FAILURE;
}
