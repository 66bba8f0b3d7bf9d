#pragma once

#include "platform/linux/processes/ProcessTable.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>

namespace quorvane::test {

/// One process of a folder like the kernel's /proc.
struct FakeProcess {
    std::int32_t pid = 0;
    std::int32_t parent = 1;
    std::int32_t group = 1;
    std::int32_t session = 1;
    const char* executable = "/usr/bin/browser";
    const char* name = "browser";
    const char* unit = "/user.slice/session.scope";
    std::uint32_t user = 1000;
    std::int32_t terminal = 0;
    const char* firstArgument = "browser";
    char state = 'S';
};

/// A folder like /proc.
class FakeProc {
  public:
    FakeProc() {
        add({.pid = 1, .parent = 0, .executable = "/usr/lib/systemd/systemd", .name = "systemd"});
    }

    void add(const FakeProcess& process) const {
        const QString folder = folderOf(process.pid);
        QDir().mkpath(folder);
        write(folder + QStringLiteral("/stat"), statOf(process));
        write(folder + QStringLiteral("/cgroup"), QByteArray("0::") + process.unit + '\n');
        const QByteArray user = QByteArray::number(process.user);
        write(folder + QStringLiteral("/status"), QByteArray("Name:\t") + process.name +
                                                      "\nUid:\t" + user + '\t' + user + '\t' +
                                                      user + '\t' + user + "\nGid:\t0\n");
        write(folder + QStringLiteral("/cmdline"), QByteArray(process.firstArgument) + '\0');
        if (process.executable != nullptr) {
            QFile::link(QString::fromLatin1(process.executable), folder + QStringLiteral("/exe"));
        }
    }

    [[nodiscard]] static QByteArray statOf(const FakeProcess& process) {
        return QByteArray::number(process.pid) + " (" + process.name + ") " + process.state + ' ' +
               QByteArray::number(process.parent) + ' ' + QByteArray::number(process.group) + ' ' +
               QByteArray::number(process.session) + ' ' + QByteArray::number(process.terminal) +
               " -1 0 0 0 0 0 0 0 0 0 20 0 1 0 " + QByteArray::number(startOf(process.pid)) +
               " 4464640 746\n";
    }

    [[nodiscard]] static qint64 startOf(std::int32_t pid) { return 5000 + pid; }

    void remove(std::int32_t pid) const { QDir(folderOf(pid)).removeRecursively(); }

    [[nodiscard]] QString path() const { return folder_.path(); }

    [[nodiscard]] ProcessTable table() const { return ProcessTable::read(path()); }

  private:
    [[nodiscard]] QString folderOf(std::int32_t pid) const {
        return folder_.filePath(QString::number(pid));
    }

    static void write(const QString& path, const QByteArray& text) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(text);
        }
    }

    QTemporaryDir folder_;
};

} // namespace quorvane::test
