#include "platform/linux/ProcessFacts.h"

#include "platform/linux/BoundedFile.h"

#include <QFile>
#include <QList>

#include <unistd.h>

namespace quorvane {

namespace {

// Paths are shorter than this; of a longer command line the first words are enough.
constexpr qsizetype longestFact = 8192;

QString processFile(std::int32_t pid, const char* name) {
    return QStringLiteral("/proc/%1/%2").arg(QString::number(pid), QLatin1String(name));
}

} // namespace

ProcessFacts ProcessFacts::of(std::int32_t pid) {
    ProcessFacts facts;
    facts.controlGroups =
        readBounded(processFile(pid, "cgroup"), longestFact).value_or(QByteArray());
    // A program that has been upgraded while it runs shows as deleted.
    facts.executable = QFile::encodeName(QFile::symLinkTarget(processFile(pid, "exe")));
    if (facts.executable.endsWith(" (deleted)")) {
        facts.executable.chop(10);
    }
    const QList<QByteArray> arguments =
        readBounded(processFile(pid, "cmdline"), longestFact).value_or(QByteArray()).split('\0');
    facts.firstArgument = arguments.value(0);
    facts.secondArgument = arguments.value(1);
    return facts;
}

bool ProcessFacts::exists(std::int32_t pid) {
    return ::access(QFile::encodeName(processFile(pid, "stat")).constData(), F_OK) == 0;
}

} // namespace quorvane
