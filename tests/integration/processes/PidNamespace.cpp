#include "tests/integration/processes/PidNamespace.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace quorvane::test {

namespace {

constexpr const char* outerName = "QUORVANE_TEST_OUTER_NAMESPACE";

std::string namespaceName() {
    std::array<char, 64> name{};
    const ssize_t size = ::readlink("/proc/self/ns/pid", name.data(), name.size());
    return size > 0 ? std::string(name.data(), static_cast<std::size_t>(size)) : std::string();
}

/// Others than root have to be root of a user namespace, which not every machine permits.
std::vector<std::string> unshareCommand() {
    std::vector<std::string> command{"unshare"};
    if (::geteuid() != 0) {
        command.insert(command.end(), {"--user", "--map-root-user"});
    }
    command.insert(command.end(), {"--pid", "--fork", "--kill-child", "--mount-proc", "--"});
    return command;
}

} // namespace

void PidNamespace::enter(char** argv) {
    std::vector<std::string> command = unshareCommand();
    std::string probe;
    for (const std::string& word : command) {
        probe += word + ' ';
    }
    // NOLINTNEXTLINE(cert-env33-c,concurrency-mt-unsafe): no word of it comes from outside
    if (std::system((probe + "true >/dev/null 2>&1").c_str()) != 0) {
        return;
    }
    ::setenv(outerName, namespaceName().c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    std::vector<char*> arguments;
    arguments.reserve(command.size());
    for (std::string& word : command) {
        arguments.push_back(word.data());
    }
    std::array<char, 4096> self{};
    if (::readlink("/proc/self/exe", self.data(), self.size() - 1) > 0) {
        arguments.push_back(self.data());
        for (char** argument = argv + 1; *argument != nullptr; ++argument) {
            arguments.push_back(*argument);
        }
        arguments.push_back(nullptr);
        ::execvp(arguments.front(), arguments.data());
    }
    ::unsetenv(outerName); // NOLINT(concurrency-mt-unsafe)
}

bool PidNamespace::isInside() {
    const char* const outer = std::getenv(outerName); // NOLINT(concurrency-mt-unsafe)
    const std::string here = namespaceName();
    return outer != nullptr && *outer != '\0' && !here.empty() && here != outer;
}

bool PidNamespace::isFirstProcess() {
    return ::getpid() == 1 && isInside();
}

int PidNamespace::runBelow(const std::function<int()>& function) {
    const pid_t child = ::fork();
    if (child == 0) {
        return function();
    }
    for (;;) {
        int status = 0;
        const pid_t ended = ::wait(&status);
        if (ended == child) {
            return WIFEXITED(status) ? WEXITSTATUS(status) : EXIT_FAILURE;
        }
        if (ended < 0 && errno != EINTR) {
            return EXIT_FAILURE;
        }
    }
}

} // namespace quorvane::test
