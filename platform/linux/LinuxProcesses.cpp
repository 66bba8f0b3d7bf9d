#include "platform/linux/LinuxProcesses.h"

namespace quorvane {

LinuxProcesses::LinuxProcesses(PuttingBackJournal& journal, LogSink& log)
    : journal_(journal), log_(log) {}

void LinuxProcesses::stop(std::int32_t /*pid*/) {
    log_.write(QStringLiteral("Applications cannot be paused here."));
}

void LinuxProcesses::resume(std::int32_t /*pid*/) {}

void LinuxProcesses::putBack() {}

} // namespace quorvane
