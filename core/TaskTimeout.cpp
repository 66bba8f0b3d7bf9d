#include "core/TaskTimeout.h"

#include "platform/Log.h"
#include "platform/Platform.h"
#include "platform/Tasks.h"

namespace quorvane {

bool runUntilTimeout(Task* task, Seconds limit) {
    Clock& clock = platform().clock();
    const Seconds deadline = clock.monotonic() + limit;
    if (task == nullptr || !task->isRunning()) {
        return true;
    }
    while (clock.monotonic() <= deadline) {
        clock.sleep(Seconds(1.0));
        if (!task->isRunning()) {
            return true;
        }
    }
    log(QStringLiteral("Error: terminating task %1, timeout was reached.").arg(task->launchPath()));
    task->terminate();
    return false;
}

} // namespace quorvane
