#include "platform/linux/processes/ProcessFiles.h"

#include "platform/linux/common/BoundedFile.h"

#include <QFile>

#include <unistd.h>

namespace quorvane {

namespace {

// A path may have 4096 bytes, and the old hierarchies give each process a dozen of them.
constexpr qsizetype longestText = 65536;

} // namespace

ProcessFiles::ProcessFiles(std::int32_t pid, const QString& procFolder)
    : folder_(procFolder + QLatin1Char('/') + QString::number(pid) + QLatin1Char('/')) {}

bool ProcessFiles::exist() const {
    return ::access(QFile::encodeName(folder_).constData(), F_OK) == 0;
}

QString ProcessFiles::program() const {
    QString path = QFile::symLinkTarget(folder_ + QStringLiteral("exe"));
    constexpr QLatin1String replaced(" (deleted)");
    if (path.endsWith(replaced)) {
        path.chop(replaced.size());
    }
    return path;
}

QByteArray ProcessFiles::commandLine() const {
    return text("cmdline");
}

QByteArray ProcessFiles::controlGroups() const {
    return text("cgroup");
}

QByteArray ProcessFiles::status() const {
    return text("status");
}

QByteArray ProcessFiles::text(const char* name) const {
    return readBounded(folder_ + QLatin1String(name), longestText).value_or(QByteArray());
}

} // namespace quorvane
