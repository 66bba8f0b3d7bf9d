#include "platform/linux/processes/RestoreGuard.h"

#include "platform/linux/processes/ChildSignals.h"

#include <QByteArray>
#include <QFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

constexpr const char* programName = "quorvane";
constexpr const char* argumentOfGuard = "--stand-guard"; // followed by process id and start time
constexpr const char* argumentOfRestore = "--restore";

// Sent by a terminal, by the end of a session or to all of a unit.
constexpr std::array guardIgnores{SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP, SIGTTIN, SIGTTOU};

void handleGuardsSignals(void (*handler)(int)) {
    for (const int each : guardIgnores) {
        std::signal(each, handler);
    }
}

/// What else the process had open when the guard was started must not be kept open by it.
void closeAllButStandardDescriptors() {
    constexpr unsigned first = STDERR_FILENO + 1;
    if (::syscall(SYS_close_range, first, ~0U, 0) == 0) {
        return;
    }
    const long last = ::sysconf(_SC_OPEN_MAX); // the kernel is older than 5.9
    for (int each = static_cast<int>(first); each < last; ++each) {
        ::close(each);
    }
}

/// A process's memory takes a moment to be gone after its connections have been closed; until then
/// it counts as alive, and what it has changed as its own affair.
void waitForEndOf(const JournalWriter& process) {
    constexpr timespec pause{0, 5'000'000};
    constexpr int mostPauses = 2000;
    for (int i = 0; i < mostPauses && process.isAlive(); ++i) {
        ::nanosleep(&pause, nullptr);
    }
}

/// Between fork and exec, where only system calls are allowed. What is ignored stays so behind
/// exec.
[[noreturn]] void becomeGuard(int guardsEnd, int errorPipe, const char* program,
                              char* const* arguments) {
    handleGuardsSignals(SIG_IGN);
    releaseSignals();
    const int null = ::open("/dev/null", O_WRONLY);
    // Whoever reads the program's output would wait for the guard's end too.
    if (::dup2(guardsEnd, STDIN_FILENO) >= 0 && null >= 0 && ::dup2(null, STDOUT_FILENO) >= 0) {
        ::execv(program, arguments);
    }
    const int error = errno;
    [[maybe_unused]] const ssize_t written = ::write(errorPipe, &error, sizeof error);
    ::_exit(EXIT_FAILURE);
}

void closePair(const std::array<int, 2>& pair) {
    ::close(pair[0]);
    ::close(pair[1]);
}

/// Waits until the descriptors' other ends are closed by exec, or tells why there was none.
int errorOfStart(int errorPipe) {
    int error = 0;
    ssize_t size = 0;
    do {
        size = ::read(errorPipe, &error, sizeof error);
    } while (size < 0 && errno == EINTR);
    return size == static_cast<ssize_t>(sizeof error) ? error : 0;
}

} // namespace

RestoreGuard::RestoreGuard(QString program) : program_(std::move(program)) {}

RestoreGuard::~RestoreGuard() {
    if (connection_ >= 0) {
        ::close(connection_);
    }
}

bool RestoreGuard::stands() const {
    pollfd connection{connection_, 0, 0};
    return connection_ >= 0 && ::poll(&connection, 1, 0) == 0; // else the other end is gone
}

int RestoreGuard::post() {
    if (stands()) {
        return 0;
    }
    if (connection_ >= 0) {
        ::close(std::exchange(connection_, -1));
    }
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return errno;
    }
    const int error = start(ends[1]);
    ::close(ends[1]);
    if (error == 0) {
        connection_ = ends[0];
    } else {
        ::close(ends[0]);
    }
    return error;
}

/// The guard is not this process's child: it would stay behind as a zombie.
int RestoreGuard::start(int guardsEnd) {
    const JournalWriter self = JournalWriter::self();
    const QByteArray program = QFile::encodeName(program_);
    std::array<QByteArray, 4> texts{programName, argumentOfGuard, QByteArray::number(self.pid),
                                    QByteArray::number(self.startTime)};
    std::array<char*, texts.size() + 1> arguments{};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        arguments[i] = texts[i].data();
    }
    std::array<int, 2> errorPipe{};
    if (::pipe2(errorPipe.data(), O_CLOEXEC) != 0) {
        return errno;
    }
    const pid_t between = ::fork();
    if (between == 0) {
        ::setsid();
        if (::fork() == 0) {
            becomeGuard(guardsEnd, errorPipe[1], program.constData(), arguments.data());
        }
        ::_exit(EXIT_SUCCESS);
    }
    if (between < 0) {
        const int error = errno;
        closePair(errorPipe);
        return error;
    }
    int status = 0;
    while (::waitpid(between, &status, 0) < 0 && errno == EINTR) {
    }
    ::close(errorPipe[1]);
    const int error = errorOfStart(errorPipe[0]);
    ::close(errorPipe[0]);
    return error;
}

void RestoreGuard::dismiss() {
    if (connection_ >= 0) {
        constexpr char word = '.';
        ::send(connection_, &word, 1, MSG_NOSIGNAL);
        ::close(std::exchange(connection_, -1));
    }
}

std::optional<int> RestoreGuard::standIfAsked(int argc, char** argv) {
    if (argc != 4 || std::strcmp(argv[1], argumentOfGuard) != 0) {
        return std::nullopt;
    }
    constexpr int decimal = 10;
    const JournalWriter guarded{std::strtoll(argv[2], nullptr, decimal),
                                std::strtoll(argv[3], nullptr, decimal)};
    closeAllButStandardDescriptors();
    char word = 0;
    ssize_t size = 0;
    do {
        size = ::read(STDIN_FILENO, &word, 1);
    } while (size < 0 && errno == EINTR);
    if (size > 0) {
        return EXIT_SUCCESS;
    }
    waitForEndOf(guarded);
    handleGuardsSignals(SIG_DFL);
    const int null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::dup2(null, STDIN_FILENO);
    ::execl("/proc/self/exe", programName, argumentOfRestore, nullptr);
    return EXIT_FAILURE;
}

} // namespace quorvane
