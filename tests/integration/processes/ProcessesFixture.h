#pragma once

#include "platform/linux/processes/LinuxProcesses.h"
#include "tests/integration/processes/PidNamespace.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <csignal>
#include <memory>
#include <unistd.h>
#include <vector>

namespace quorvane::test {

/// Real processes in a PID namespace, and the port that stops them.
class ProcessesFixture : public testing::Test {
  protected:
    void SetUp() override {
        if (!PidNamespace::isInside()) {
            GTEST_SKIP() << "skipped: a PID namespace of the test's own is not permitted here";
        }
        qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
        openPort();
    }

    /// What the programs have started themselves ends with the namespace.
    void TearDown() override {
        if (!processes) {
            return;
        }
        processes->putBack();
        processes.reset();
        for (const std::unique_ptr<QProcess>& program : programs) {
            program->kill();
            program->waitForFinished();
        }
        EXPECT_TRUE(waitUntil([] { return guards().empty(); })) << "for the next test";
    }

    void openPort(const LinuxProcesses::Applications& applications = {},
                  const QString& guard = QStringLiteral(QUORVANE_PROGRAM)) {
        processes.reset();
        journal = std::make_unique<PuttingBackJournal>(PuttingBackJournal::defaultPath(), log);
        processes = std::make_unique<LinuxProcesses>(*journal, log, guard);
        processes->setApplications(applications);
    }

    enum class Group { OfTheTest, ItsOwn };

    /// Starts a program that says "ready" as often as given, and waits for that. What it writes in
    /// lines of the form "NAME PID" can be asked for as `pid`.
    QProcess& start(const QString& program, const QStringList& arguments,
                    Group group = Group::OfTheTest, int ready = 1) {
        programs.push_back(std::make_unique<QProcess>());
        QProcess& process = *programs.back();
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        if (group == Group::ItsOwn) {
            process.setChildProcessModifier([] { ::setpgid(0, 0); });
        }
        process.start(program, arguments);
        QByteArray said;
        EXPECT_TRUE(waitUntil([&] {
            said += process.readAllStandardOutput();
            return said.count("ready\n") == ready;
        })) << qPrintable(program)
            << said.constData();
        output += said;
        return process;
    }

    /// A script whose parts run side by side says "ready" once for each.
    QProcess& script(const char* text, Group group = Group::OfTheTest, int ready = 1) {
        return start(QStringLiteral("bash"), {QStringLiteral("-c"), QString::fromUtf8(text)}, group,
                     ready);
    }

    QProcess& scenario(const QStringList& arguments, Group group = Group::OfTheTest,
                       int ready = 1) {
        return start(QStringLiteral(QUORVANE_PROCESS_SCENARIOS), arguments, group, ready);
    }

    /// One run of the program that stops the application.
    QProcess& startResident(std::int32_t application) {
        return scenario({QStringLiteral("resident"), QString::number(application),
                         QStringLiteral(QUORVANE_PROGRAM)});
    }

    static std::int32_t idOf(const QProcess& process) {
        return static_cast<std::int32_t>(process.processId());
    }

    /// Which id the script has told under this name.
    [[nodiscard]] std::int32_t pid(const char* name) const {
        for (const QByteArray& line : output.split('\n')) {
            if (line.startsWith(QByteArray(name) + ' ')) {
                return line.mid(line.indexOf(' ') + 1).toInt();
            }
        }
        ADD_FAILURE() << name << " is not in: " << output.constData();
        return 0;
    }

    [[nodiscard]] static bool isStopped(std::int32_t process) {
        const std::optional<Process> now = ProcessTable::look(process);
        return now && now->isStopped;
    }

    [[nodiscard]] static bool isRunning(std::int32_t process) {
        const std::optional<Process> now = ProcessTable::look(process);
        return now && !now->isStopped;
    }

    /// A signal takes effect when the process gets to it.
    [[nodiscard]] static bool stops(std::int32_t process) {
        return waitUntil([process] { return isStopped(process); });
    }

    [[nodiscard]] static bool runs(std::int32_t process) {
        return waitUntil([process] { return isRunning(process); });
    }

    /// As a user does. Only ever what the test has started.
    static void sendTo(std::int32_t process, int signal) {
        ASSERT_GT(process, 1);
        ASSERT_NE(process, ::getpid());
        ASSERT_TRUE(PidNamespace::isInside());
        ASSERT_EQ(::kill(process, signal), 0);
    }

    static void killAndCollect(QProcess& process) {
        process.kill();
        EXPECT_TRUE(process.waitForFinished());
    }

    /// The processes that wait to put back.
    [[nodiscard]] static std::vector<std::int32_t> guards() {
        std::vector<std::int32_t> found;
        const ProcessTable table = ProcessTable::read();
        for (const auto& [id, process] : table.all()) {
            QFile file(QStringLiteral("/proc/%1/cmdline").arg(id));
            if (file.open(QIODevice::ReadOnly) && file.readAll().contains("--stand-guard")) {
                found.push_back(id);
            }
        }
        return found;
    }

    [[nodiscard]] std::size_t journalled() const {
        RecordingLog quiet;
        PuttingBackJournal other(PuttingBackJournal::defaultPath(), quiet);
        return other.entries().value_or(PuttingBackJournal::Entries()).size();
    }

    QTemporaryDir folder;
    RecordingLog log;
    QByteArray output;
    std::vector<std::unique_ptr<QProcess>> programs;
    std::unique_ptr<PuttingBackJournal> journal;
    std::unique_ptr<LinuxProcesses> processes;
};

} // namespace quorvane::test
