#include "platform/linux/applications/LinuxWorkspace.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RecordActivations.h"
#include "tests/support/RecordingLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include <unistd.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace quorvane::test {
namespace {

/// A display server that is none of the real ones.
class FakeWindowList final : public WindowList {
  public:
    void open() override {
        isOpen = true;
        if (!blindness.isEmpty()) {
            Q_EMIT unavailable(blindness);
        }
    }

    [[nodiscard]] std::vector<SessionWindow> windows() const override { return listed; }

    [[nodiscard]] WindowId activeWindow() const override { return active; }

    void hide(WindowId window) override { hidden.push_back(window); }

    void close(WindowId window) override { closed.push_back(window); }

    [[nodiscard]] Result<Done> tellsFront() const override { return front; }

    [[nodiscard]] Result<Done> canHide() const override { return hiding; }

    [[nodiscard]] QString leavesOut() const override { return leftOut; }

    void show(const std::vector<SessionWindow>& windows, WindowId activeWindow = WindowId::None) {
        listed = windows;
        active = activeWindow;
        Q_EMIT changed();
    }

    bool isOpen = false;
    std::vector<SessionWindow> listed;
    WindowId active = WindowId::None;
    std::vector<WindowId> hidden;
    std::vector<WindowId> closed;
    Result<Done> front = Done();
    Result<Done> hiding = Done();
    QString leftOut;
    QString blindness;
};

/// More than 32 bits, as ids of some servers are.
constexpr WindowId first{(1ULL << 40U) + 1};
constexpr WindowId second{(1ULL << 40U) + 2};
constexpr WindowId third{1};

SessionWindow ofApplication(WindowId id, const char* applicationId, bool isOrdinary = true) {
    return {id, 0, isOrdinary, {applicationId, {}, {}}};
}

SessionWindow ofProcess(WindowId id, std::int32_t pid) {
    return {id, pid, true, {"process", "process", "Process"}};
}

/// The port over such a server.
class WorkspaceWindowsTest : public testing::Test {
  protected:
    WorkspaceWindowsTest() {
        for (const char* part : {"Resources", "units", "entries"}) {
            QDir(folder_.path()).mkpath(QLatin1String(part));
        }
        QFile::copy(QStringLiteral(QUORVANE_SOURCE_DIR "/resources/ApplicationIdentifiers.tsv"),
                    folder_.filePath(QStringLiteral("Resources/ApplicationIdentifiers.tsv")));
        auto windows = std::make_unique<FakeWindowList>();
        windows_ = windows.get();
        workspace_ = std::make_unique<LinuxWorkspace>(
            std::move(windows), QStringLiteral("com.TarnwickStudios.quorvane"),
            LinuxWorkspace::Places{folder_.path(),
                                   folder_.filePath(QStringLiteral("units")),
                                   {folder_.filePath(QStringLiteral("entries"))},
                                   QString()},
            log_);
        recordActivations(*workspace_, events_);
    }

    void begin() const {
        while (!windows_->isOpen) {
            QCoreApplication::processEvents();
        }
    }

    void write(const QString& path, const QByteArray& text) const {
        const QString place = folder_.filePath(path);
        QDir().mkpath(QFileInfo(place).path());
        QFile file(place);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    void install(const char* id, const QByteArray& lines) const {
        write(QStringLiteral("entries/%1.desktop").arg(QLatin1String(id)),
              "[Desktop Entry]\nType=Application\n" + lines);
    }

    [[nodiscard]] QStringList identifiers() const {
        QStringList identifiers;
        for (const RunningApplication& each : workspace_->runningApplications()) {
            identifiers.append(each.bundleIdentifier);
        }
        return identifiers;
    }

    [[nodiscard]] RunningApplication application(int place) const {
        return workspace_->runningApplications().at(static_cast<std::size_t>(place));
    }

    QTemporaryDir folder_;
    RecordingLog log_;
    FakeWindowList* windows_ = nullptr; ///< the workspace's
    QStringList events_;
    std::unique_ptr<LinuxWorkspace> workspace_;
};

TEST_F(WorkspaceWindowsTest, ApplicationIdWithoutAProcess_MakesAnApplication) {
    install("org.example.App", "Name=The App\n");
    windows_->show({ofApplication(first, "org.example.app")}, first);
    ASSERT_THAT(workspace_->runningApplications(), SizeIs(1));
    EXPECT_EQ(application(0),
              (RunningApplication{0, QStringLiteral("org.example.App"), QStringLiteral("The App"),
                                  ActivationPolicy::Regular, true}));
    EXPECT_EQ(workspace_->frontmostApplication(), application(0));
}

TEST_F(WorkspaceWindowsTest, ApplicationIdThatIsNotInstalled_IsTheIdentifier) {
    windows_->show({ofApplication(first, "org.example.Unheard"), ofApplication(second, "firefox")});
    EXPECT_THAT(identifiers(), ElementsAre(QStringLiteral("org.example.Unheard"),
                                           QStringLiteral("org.mozilla.Firefox")));
}

TEST_F(WorkspaceWindowsTest, WindowsOfOneApplicationId_AreOneApplication) {
    windows_->show({ofApplication(first, "a", false), ofApplication(second, "b"),
                    ofApplication(third, "a", false)},
                   third);
    EXPECT_THAT(identifiers(), ElementsAre(QStringLiteral("a"), QStringLiteral("b")));
    EXPECT_TRUE(application(0).isActive);
    EXPECT_EQ(application(0).activationPolicy, ActivationPolicy::Accessory);
    EXPECT_FALSE(application(1).isActive);
}

TEST_F(WorkspaceWindowsTest, ProcessThatIsTold_MakesAnApplicationBesideTheOthers) {
    windows_->show(
        {ofProcess(first, ::getpid()), ofApplication(second, "process"), ofApplication(third, "")});
    ASSERT_THAT(workspace_->runningApplications(), SizeIs(2));
    EXPECT_EQ(application(0).processIdentifier, ::getpid());
    EXPECT_EQ(application(1).processIdentifier, 0);
}

TEST_F(WorkspaceWindowsTest, FrontOfApplicationsWithoutAProcess_IsTold) {
    windows_->show(
        {ofApplication(first, "a"), ofApplication(second, "a"), ofApplication(third, "b")}, first);
    windows_->show(windows_->listed, second);
    EXPECT_THAT(events_, ElementsAre(QStringLiteral("+a")));
    windows_->show(windows_->listed, third);
    windows_->show({});
    EXPECT_THAT(events_, ElementsAre(QStringLiteral("+a"), QStringLiteral("-a"),
                                     QStringLiteral("+b"), QStringLiteral("-b")));
    EXPECT_FALSE(workspace_->frontmostApplication());
}

TEST_F(WorkspaceWindowsTest, Hide_IsAskedOfTheServerForEachOrdinaryWindow) {
    windows_->show(
        {ofApplication(first, "a"), ofApplication(second, "a", false), ofApplication(third, "b")});
    workspace_->hide(application(0));
    EXPECT_THAT(windows_->hidden, ElementsAre(first));
    workspace_->terminate(application(0));
    EXPECT_THAT(windows_->closed, ElementsAre(first, second));
}

TEST_F(WorkspaceWindowsTest, WhatTheServerCannotDo_IsTold) {
    EXPECT_TRUE(workspace_->tellsFront());
    EXPECT_TRUE(workspace_->canHide());
    windows_->front = Failure{QStringLiteral("nobody tells")};
    windows_->hiding = Failure{QStringLiteral("there is no way to minimise")};
    ASSERT_FALSE(workspace_->tellsFront());
    EXPECT_EQ(workspace_->tellsFront().error(), QStringLiteral("nobody tells"));
    ASSERT_FALSE(workspace_->canHide());
    EXPECT_EQ(workspace_->canHide().error(), QStringLiteral("there is no way to minimise"));
}

TEST_F(WorkspaceWindowsTest, NothingThatIsSeen_IsSaidOnceWithTheReason) {
    EXPECT_FALSE(windows_->isOpen) << "not before the main loop is idle";
    windows_->blindness = QStringLiteral("the server keeps silent");
    begin();
    Q_EMIT windows_->unavailable(windows_->blindness);
    EXPECT_THAT(log_.lines(),
                ElementsAre(QStringLiteral("Applications cannot be seen here (the server keeps "
                                           "silent), so none is paused or hidden.")));
}

TEST_F(WorkspaceWindowsTest, WindowsThatAreLeftOut_AreMentioned) {
    windows_->leftOut = QStringLiteral("Some are not seen.");
    begin();
    EXPECT_THAT(log_.lines(), ElementsAre(QStringLiteral("Some are not seen.")));
}

// As an accessory of its own it would be paused while its user works with it.
TEST_F(WorkspaceWindowsTest, UnitOfAnApplicationWithoutAProcess_IsNoOtherApplication) {
    const QByteArray program =
        QFileInfo(QCoreApplication::applicationFilePath()).fileName().toUtf8();
    install("org.example.App", "Name=App\nExec=" + program + "\n");
    write(QStringLiteral("units/app-org.example.App-1.scope/cgroup.procs"),
          QByteArray::number(::getpid()) + '\n');
    EXPECT_THAT(identifiers(), ElementsAre(QStringLiteral("org.example.App")));
    EXPECT_EQ(application(0).processIdentifier, ::getpid());

    windows_->show({ofApplication(first, "org.example.App")}, first);
    EXPECT_THAT(identifiers(), ElementsAre(QStringLiteral("org.example.App")));
    EXPECT_EQ(application(0).processIdentifier, 0);
    EXPECT_TRUE(application(0).isActive);

    windows_->show({ofApplication(first, "org.example.Other")}, first);
    EXPECT_THAT(identifiers(), ElementsAre(QStringLiteral("org.example.Other"),
                                           QStringLiteral("org.example.App")));
}

} // namespace
} // namespace quorvane::test
