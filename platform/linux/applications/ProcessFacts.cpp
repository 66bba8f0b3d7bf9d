#include "platform/linux/applications/ProcessFacts.h"

#include "platform/linux/processes/ProcessFiles.h"

#include <QFile>
#include <QList>

namespace quorvane {

ProcessFacts ProcessFacts::of(std::int32_t pid) {
    const ProcessFiles files(pid);
    ProcessFacts facts;
    facts.controlGroups = files.controlGroups();
    facts.executable = QFile::encodeName(files.program());
    const QList<QByteArray> arguments = files.commandLine().split('\0');
    facts.firstArgument = arguments.value(0);
    facts.secondArgument = arguments.value(1);
    return facts;
}

bool ProcessFacts::exists(std::int32_t pid) {
    return ProcessFiles(pid).exist();
}

} // namespace quorvane
