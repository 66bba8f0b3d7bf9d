#include "platform/linux/processes/ChildSignals.h"

#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <unistd.h>

namespace quorvane {

void releaseSignals() {
    sigset_t none{};
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void endWithParent(pid_t parent, int signal) {
    ::prctl(PR_SET_PDEATHSIG, signal);
    if (::getppid() != parent) {
        ::_exit(EXIT_FAILURE);
    }
}

} // namespace quorvane
