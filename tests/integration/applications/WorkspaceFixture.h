#pragma once

#include "platform/linux/applications/LinuxWorkspace.h"
#include "platform/linux/applications/X11WindowList.h"
#include "tests/support/Daemon.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RecordActivations.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <memory>

namespace quorvane::test {

/// A program with windows, which the test tells what to do.
class SampleProgram {
  public:
    explicit SampleProgram(const QString& program = QStringLiteral(QUORVANE_SAMPLE_WINDOWS)) {
        process_.start(program, QStringList());
        EXPECT_TRUE(process_.waitForStarted());
    }

    ~SampleProgram() {
        process_.closeWriteChannel(); // it ends with its input
        if (!process_.waitForFinished(5000)) {
            process_.kill();
            process_.waitForFinished(5000);
        }
    }

    SampleProgram(const SampleProgram&) = delete;
    SampleProgram& operator=(const SampleProgram&) = delete;

    /// Its answer to a command.
    QString tell(const QString& command) {
        process_.write(command.toUtf8() + '\n');
        EXPECT_TRUE(waitUntil([this] { return process_.canReadLine(); }, std::chrono::seconds(30)))
            << command.toStdString();
        return QString::fromUtf8(process_.readLine().trimmed());
    }

    /// A new window; the keys are those of sample_windows.cpp.
    QString window(const QString& keys = {}) { return tell(QStringLiteral("new ") + keys); }

    [[nodiscard]] std::int32_t pid() const {
        return static_cast<std::int32_t>(process_.processId());
    }

  private:
    QProcess process_;
};

/// A desktop of one X server, a home folder and, in `start`, a window manager and Quorvane's view.
class WorkspaceFixture : public testing::Test {
  protected:
    static bool isInstalled(const char* program) {
        return !QStandardPaths::findExecutable(QLatin1String(program)).isEmpty();
    }

    void SetUp() override {
        if (!XServer::isAvailable()) {
            GTEST_SKIP() << "skipped: Xvfb is not installed";
        }
        qputenv("HOME", QFile::encodeName(home_.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(home_.filePath(QStringLiteral("data"))));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home_.filePath(QStringLiteral("config"))));
        qputenv("XDG_CACHE_HOME", QFile::encodeName(home_.filePath(QStringLiteral("cache"))));
        qputenv("XDG_DATA_DIRS", "/usr/share");
        ASSERT_TRUE(QDir().mkpath(contents() + QStringLiteral("/Linux")));
        ASSERT_TRUE(QDir().mkpath(contents() + QStringLiteral("/Resources")));
        const QString table = QStringLiteral("/ApplicationIdentifiers.tsv");
        ASSERT_TRUE(QFile::copy(QStringLiteral(QUORVANE_RESOURCES) + table,
                                contents() + QStringLiteral("/Resources") + table));
        server_ = std::make_unique<XServer>();
        ASSERT_TRUE(server_->isRunning());
    }

    void TearDown() override { workspace_.reset(); }

    static constexpr auto blindness =
        "Applications cannot be seen here (no X server), so none is paused or hidden.";

    /// Of Quorvane's bundle.
    [[nodiscard]] QString contents() const { return home_.filePath(QStringLiteral("Contents")); }

    /// An installed application for the windows of this class.
    void install(const char* id, const char* windowClass) const {
        const QString folder = home_.filePath(QStringLiteral("data/applications"));
        QDir().mkpath(folder);
        QFile file(folder + QLatin1Char('/') + QLatin1String(id) + QStringLiteral(".desktop"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("[Desktop Entry]\nType=Application\nName=The ") + windowClass +
                   "\nExec=nothing\nStartupWMClass=" + windowClass + "\n");
    }

    void startManager(const QString& name) {
        ASSERT_TRUE(manager_.start(name,
                                   name == QLatin1String("xfwm4")
                                       ? QStringList{QStringLiteral("--compositor=off")}
                                       : QStringList(),
                                   home_.filePath(QStringLiteral("manager.log"))));
        ASSERT_TRUE(waitUntil([] { return hasManager(); }, std::chrono::seconds(30)));
        // It announces itself before it looks after windows: a first one tries that out.
        QString window;
        {
            SampleProgram probe;
            window = probe.window();
            ASSERT_TRUE(waitUntil(
                [&probe, &window] {
                    const bool isShown =
                        probe.tell(QStringLiteral("state ") + window) == QLatin1String("1");
                    if (!isShown) {
                        probe.tell(QStringLiteral("close ") + window);
                        window = probe.window();
                    }
                    return isShown;
                },
                std::chrono::seconds(30)));
        }
        const QByteArray id = "0x" + QByteArray::number(window.toUInt(), 16);
        ASSERT_TRUE(waitUntil([&id] { return !root("_NET_CLIENT_LIST").contains(id); }));
    }

    void startWorkspace() {
        auto windows = std::make_unique<X11WindowList>();
        windows_ = windows.get();
        workspace_ = std::make_unique<LinuxWorkspace>(
            std::move(windows), QStringLiteral("com.TarnwickStudios.quorvane"),
            LinuxWorkspace::Places{contents()}, log_);
        recordActivations(*workspace_, events_);
    }

    /// What xprop says of a property of the root window.
    static QByteArray root(const char* property) {
        QProcess query;
        query.start(QStringLiteral("xprop"), {QStringLiteral("-root"), QLatin1String(property)});
        query.waitForFinished(5000);
        return query.readAllStandardOutput();
    }

    static bool hasManager() { return root("_NET_SUPPORTING_WM_CHECK").contains("0x"); }

    [[nodiscard]] std::optional<RunningApplication> application(std::int32_t pid) const {
        for (const RunningApplication& application : workspace_->runningApplications()) {
            if (application.processIdentifier == pid) {
                return application;
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] bool waitForApplication(std::int32_t pid) const {
        return waitUntil([this, pid] { return application(pid).has_value(); },
                         std::chrono::seconds(30));
    }

    [[nodiscard]] bool waitForFront(std::int32_t pid) const {
        return waitUntil(
            [this, pid] {
                const auto front = workspace_->frontmostApplication();
                return (front ? front->processIdentifier : 0) == pid;
            },
            std::chrono::seconds(30));
    }

    /// Whatever was under way at the server has arrived once another window has come and gone.
    void settle() const {
        SampleProgram marker;
        marker.window();
        EXPECT_TRUE(waitForApplication(marker.pid()));
    }

    QTemporaryDir home_;
    std::unique_ptr<XServer> server_;
    PrivateBus bus_{PrivateBus::Type::Session}; ///< a window manager's settings are on it
    Daemon manager_;
    RecordingLog log_;
    QStringList events_;
    std::unique_ptr<LinuxWorkspace> workspace_;
    X11WindowList* windows_ = nullptr; ///< the workspace's
};

} // namespace quorvane::test
