#include "platform/linux/ChildSignals.h"

#include <csignal>

namespace quorvane {

void releaseSignals() {
    sigset_t none{};
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

} // namespace quorvane
