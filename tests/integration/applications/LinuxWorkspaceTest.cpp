#include "tests/integration/applications/WorkspaceFixture.h"

#include <QDBusMessage>
#include <QElapsedTimer>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace quorvane::test {

/// Under a window manager.
class LinuxWorkspaceTest : public WorkspaceFixture,
                           public testing::WithParamInterface<const char*> {
  protected:
    void SetUp() override {
        if (!isInstalled(GetParam()) || !isInstalled("xprop")) {
            GTEST_SKIP() << "skipped: " << GetParam() << " or xprop is not installed";
        }
        WorkspaceFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) {
            return;
        }
        installSettings();
        install("org.example.One", "One");
        install("org.example.Two", "Two");
        startManager(QLatin1String(GetParam()));
        startWorkspace();
    }

    /// xfwm4 reads its settings from the bus.
    void installSettings() {
        const QString service =
            QStringLiteral("/usr/share/dbus-1/services/org.xfce.Xfconf.service");
        if (QFile::exists(service)) {
            QFile::copy(service, bus_.serviceFolder() + QStringLiteral("/org.xfce.Xfconf.service"));
            const QDBusConnection bus = bus_.connection(QStringLiteral("reload"));
            bus.call(QDBusMessage::createMethodCall(
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ReloadConfig")));
            QDBusConnection::disconnectFromBus(QStringLiteral("reload"));
        }
    }

    [[nodiscard]] static QString one() { return QStringLiteral("class=one,One"); }

    [[nodiscard]] static QString two() { return QStringLiteral("class=two,Two"); }

    /// Until the server has had nothing to say for a while.
    void settleQuietly() const {
        std::uint64_t before = 0;
        do {
            before = windows_->wakeUps();
            QElapsedTimer quiet;
            quiet.start();
            EXPECT_TRUE(waitUntil([&quiet] { return quiet.hasExpired(300); }));
        } while (windows_->wakeUps() != before);
    }
};

TEST_P(LinuxWorkspaceTest, Window_MakesARunningApplication) {
    SampleProgram sample;
    const QString window = sample.window(one());
    ASSERT_TRUE(waitForFront(sample.pid()));
    const std::vector<RunningApplication> found =
        workspace_->runningApplicationsWithBundleIdentifier(QStringLiteral("org.example.One"));
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].processIdentifier, sample.pid());
    EXPECT_EQ(found[0].localizedName, QStringLiteral("The One"));
    EXPECT_EQ(found[0].activationPolicy, ActivationPolicy::Regular);
    EXPECT_TRUE(found[0].isActive);
    EXPECT_EQ(workspace_->frontmostApplication(), found[0]);
    EXPECT_TRUE(workspace_->tellsFront());
    EXPECT_TRUE(workspace_->canHide());

    sample.tell(QStringLiteral("close ") + window);
    EXPECT_TRUE(waitUntil([&] { return !application(sample.pid()); }));
    EXPECT_TRUE(waitForFront(0));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_P(LinuxWorkspaceTest, WindowsThatWereThereBefore_AreSeen) {
    workspace_.reset();
    SampleProgram sample;
    sample.window(one());
    startWorkspace();
    EXPECT_TRUE(workspace_->runningApplications().empty()); // it connects when the loop runs
    EXPECT_TRUE(waitForFront(sample.pid()));
}

TEST_P(LinuxWorkspaceTest, AnotherApplicationInFront_DeactivatesAndActivates) {
    SampleProgram first;
    const QString window = first.window(one());
    ASSERT_TRUE(waitForFront(first.pid()));
    SampleProgram second;
    const QString other = second.window(two());
    second.tell(QStringLiteral("activate ") + other);
    ASSERT_TRUE(waitForFront(second.pid()));
    first.tell(QStringLiteral("activate ") + window);
    ASSERT_TRUE(waitForFront(first.pid()));
    // For a moment none may be in front; a manager may have left the new window behind.
    EXPECT_THAT(events_.filter(QStringLiteral("+")),
                ElementsAre(QStringLiteral("+org.example.One"), QStringLiteral("+org.example.Two"),
                            QStringLiteral("+org.example.One")));
    EXPECT_THAT(
        events_.filter(QStringLiteral("-")),
        ElementsAre(QStringLiteral("-org.example.One"), QStringLiteral("-org.example.Two")));
    EXPECT_FALSE(application(second.pid())->isActive);
}

TEST_P(LinuxWorkspaceTest, TwoWindowsOfOneApplication_AreOneInFront) {
    // Between two windows openbox may say for a moment that none is in front: nothing but that may
    // take an application from there to itself.
    QObject::connect(workspace_.get(), &Workspace::didDeactivateApplication, workspace_.get(),
                     [this](const RunningApplication& application) {
                         const auto front = workspace_->frontmostApplication();
                         EXPECT_TRUE(!front ||
                                     front->bundleIdentifier != application.bundleIdentifier);
                     });
    SampleProgram sample;
    const QString first = sample.window(one());
    ASSERT_TRUE(waitForFront(sample.pid()));
    const QString second = sample.window(one());
    sample.tell(QStringLiteral("activate ") + first);
    sample.tell(QStringLiteral("activate ") + second);
    sample.tell(QStringLiteral("activate ") + first);
    SampleProgram marker;
    const QString other = marker.window(two());
    marker.tell(QStringLiteral("activate ") + other);
    ASSERT_TRUE(waitForFront(marker.pid()));
    EXPECT_THAT(
        workspace_->runningApplicationsWithBundleIdentifier(QStringLiteral("org.example.One")),
        SizeIs(1));
    events_.removeDuplicates();
    EXPECT_THAT(events_,
                ElementsAre(QStringLiteral("+org.example.One"), QStringLiteral("-org.example.One"),
                            QStringLiteral("+org.example.Two")));
}

TEST_P(LinuxWorkspaceTest, Hide_IconifiesEveryWindow) {
    SampleProgram sample;
    const QString first = sample.window(one());
    const QString second = sample.window(one());
    SampleProgram other;
    const QString stays = other.window(two());
    ASSERT_TRUE(waitForApplication(sample.pid()));
    ASSERT_TRUE(waitForApplication(other.pid()));
    const auto state = [](SampleProgram& program, const QString& window) {
        return program.tell(QStringLiteral("state ") + window);
    };
    ASSERT_TRUE(waitUntil([&] { return state(sample, second) == QLatin1String("1"); }));
    settle();
    workspace_->hide(*application(sample.pid()));
    EXPECT_TRUE(waitUntil([&] {
        return state(sample, first) == QLatin1String("3") &&
               state(sample, second) == QLatin1String("3");
    }));
    EXPECT_EQ(state(other, stays), QStringLiteral("1"));
    EXPECT_TRUE(application(sample.pid()));
}

TEST_P(LinuxWorkspaceTest, Terminate_AsksEveryWindowToClose) {
    SampleProgram sample;
    sample.window(one());
    sample.window(one());
    SampleProgram other;
    other.window(two());
    ASSERT_TRUE(waitForApplication(sample.pid()));
    ASSERT_TRUE(waitForApplication(other.pid()));
    settle();
    workspace_->terminate(*application(sample.pid()));
    EXPECT_TRUE(
        waitUntil([&] { return sample.tell(QStringLiteral("asked")) == QLatin1String("2"); }));
    EXPECT_TRUE(waitUntil([&] { return !application(sample.pid()); }));
    EXPECT_EQ(other.tell(QStringLiteral("asked")), QStringLiteral("0"));
}

TEST_P(LinuxWorkspaceTest, WindowWithoutAProcessId_BelongsToWhomTheServerNames) {
    SampleProgram sample;
    sample.window(one() + QStringLiteral(" pid=none machine=none"));
    EXPECT_TRUE(waitForApplication(sample.pid()));
}

TEST_P(LinuxWorkspaceTest, WrongProcessId_DoesNotCount) {
    SampleProgram sample;
    sample.window(one() + QStringLiteral(" pid=1"));
    EXPECT_TRUE(waitForApplication(sample.pid()));
    EXPECT_FALSE(application(1));
}

TEST_P(LinuxWorkspaceTest, WindowOfAnotherMachine_HasNoProcessHere) {
    SampleProgram sample;
    sample.window(one() + QStringLiteral(" machine=elsewhere pid=1"));
    sample.window(one() + QStringLiteral(" machine=elsewhere pid=none"));
    sample.window(one() + QStringLiteral(" machine=elsewhere pid=none gtk=org.example.Two"));
    settle();
    EXPECT_FALSE(application(sample.pid()));
    EXPECT_FALSE(application(1));
    EXPECT_FALSE(application(0));
}

TEST_P(LinuxWorkspaceTest, MachineThatWasRenamed_IsStillThisOne) {
    SampleProgram sample;
    sample.window(one() + QStringLiteral(" machine=old-name"));
    EXPECT_TRUE(waitForApplication(sample.pid()));
}

TEST_P(LinuxWorkspaceTest, PanelAndSkippedWindow_MakeAnAccessory) {
    for (const char* keys : {"type=DOCK", "type=SPLASH", "state=SKIP_TASKBAR"}) {
        SampleProgram sample;
        sample.window(one() + QLatin1Char(' ') + QLatin1String(keys));
        ASSERT_TRUE(waitForApplication(sample.pid())) << keys;
        EXPECT_EQ(application(sample.pid())->activationPolicy, ActivationPolicy::Accessory) << keys;
        sample.window(one());
        EXPECT_TRUE(waitUntil([&] {
            return application(sample.pid())->activationPolicy == ActivationPolicy::Regular;
        })) << keys;
    }
}

TEST_P(LinuxWorkspaceTest, WindowsThatVanishAtOnce_LeaveNothing) {
    SampleProgram sample;
    sample.tell(QStringLiteral("vanish 200"));
    settle();
    EXPECT_TRUE(waitUntil([&] { return !application(sample.pid()); }));
    sample.window(one());
    EXPECT_TRUE(waitForApplication(sample.pid()));
}

TEST_P(LinuxWorkspaceTest, ClassWithoutAZeroByte_IsRead) {
    SampleProgram sample;
    sample.window(QStringLiteral("rawclass=One"));
    ASSERT_TRUE(waitForApplication(sample.pid()));
    EXPECT_EQ(application(sample.pid())->bundleIdentifier, QStringLiteral("org.example.One"));
}

TEST_P(LinuxWorkspaceTest, UnknownClass_HasNoIdentifierButAName) {
    SampleProgram sample;
    sample.window(QStringLiteral("class=unheard,Unheard"));
    ASSERT_TRUE(waitForApplication(sample.pid()));
    EXPECT_EQ(application(sample.pid())->bundleIdentifier, QString());
    EXPECT_EQ(application(sample.pid())->localizedName, QStringLiteral("Unheard"));
}

TEST_P(LinuxWorkspaceTest, HugeTitleAndClass_DoNotMatter) {
    SampleProgram sample;
    sample.window(QStringLiteral("title=1048576 rawclass=") + QString(3000, QLatin1Char('c')));
    ASSERT_TRUE(waitForApplication(sample.pid()));
    EXPECT_LE(application(sample.pid())->localizedName.size(), 512);
}

TEST_P(LinuxWorkspaceTest, Browser_HasTheModulesIdentifier) {
    SampleProgram sample;
    sample.window(QStringLiteral("class=Navigator,firefox"));
    ASSERT_TRUE(waitForApplication(sample.pid()));
    EXPECT_EQ(application(sample.pid())->bundleIdentifier, QStringLiteral("org.mozilla.Firefox"));
}

TEST_P(LinuxWorkspaceTest, KeysClicksAndTitlesOfOthers_DoNotWakeEachTime) {
    if (!isInstalled("xdotool")) {
        GTEST_SKIP() << "skipped: xdotool is not installed";
    }
    SampleProgram sample;
    const QString window = sample.window(one());
    ASSERT_TRUE(waitForFront(sample.pid()));
    const auto run = [](const QStringList& arguments) {
        EXPECT_EQ(QProcess::execute(QStringLiteral("xdotool"), arguments), 0);
    };
    settle();
    ASSERT_TRUE(waitForFront(sample.pid()));
    // The first click may raise the window, and the first key tells everybody of the layout of the
    // keyboard that it comes from.
    run({QStringLiteral("key"), QStringLiteral("Shift_L")});
    run({QStringLiteral("mousemove"), QStringLiteral("--window"), window, QStringLiteral("50"),
         QStringLiteral("50"), QStringLiteral("click"), QStringLiteral("1")});
    settleQuietly();
    const std::uint64_t before = windows_->wakeUps();
    run({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("50"),
         QStringLiteral("--delay"), QStringLiteral("2"), QStringLiteral("1")});
    for (int title = 0; title < 50; ++title) {
        sample.tell(QStringLiteral("title %1 title%2").arg(window).arg(title));
    }
    settleQuietly();
    // openbox may write the order of the windows, a property of the root window, and each run of
    // xdotool may announce a layout of the keyboard to everybody: a few for a hundred events.
    constexpr std::uint64_t few = 10;
    const std::uint64_t restacked = windows_->wakeUps();
    EXPECT_LE(restacked, before + few);
    run({QStringLiteral("key"), QStringLiteral("--repeat"), QStringLiteral("100"),
         QStringLiteral("--delay"), QStringLiteral("2"), QStringLiteral("Shift_L")});
    settleQuietly();
    const std::uint64_t typed = windows_->wakeUps();
    EXPECT_LE(typed, restacked + few);
    sample.window(one());
    settleQuietly();
    EXPECT_GT(windows_->wakeUps(), typed);
}

TEST_P(LinuxWorkspaceTest, WindowsOfTheBundlesPrograms_AreQuorvanes) {
    const QString program = contents() + QStringLiteral("/Linux/quorvane-window");
    ASSERT_TRUE(QFile::copy(QStringLiteral(QUORVANE_SAMPLE_WINDOWS), program));
    SampleProgram sample(program);
    sample.window(one());
    ASSERT_TRUE(waitForApplication(sample.pid()));
    EXPECT_EQ(application(sample.pid())->bundleIdentifier,
              QStringLiteral("com.TarnwickStudios.quorvane"));
}

TEST_P(LinuxWorkspaceTest, AnotherServerOnTheSameDisplay_IsSeenAgain) {
    {
        SampleProgram sample;
        sample.window(one());
        ASSERT_TRUE(waitForFront(sample.pid()));
        const RunningApplication before = *application(sample.pid());
        server_->kill();
        workspace_->hide(before); // nobody has noticed yet
        workspace_->terminate(before);
        ASSERT_TRUE(waitUntil([&] { return workspace_->runningApplications().empty(); }));
        EXPECT_FALSE(workspace_->frontmostApplication());
        EXPECT_THAT(events_, ElementsAre(QStringLiteral("+org.example.One"),
                                         QStringLiteral("-org.example.One")));
    }
    manager_.stop();
    ASSERT_TRUE(server_->restart());
    startManager(QLatin1String(GetParam()));
    SampleProgram next;
    next.window(two());
    EXPECT_TRUE(waitForFront(next.pid()));
    EXPECT_THAT(log_.lines(), ElementsAre(QLatin1String(blindness)));
}

TEST_P(LinuxWorkspaceTest, ManagerThatIsReplaced_IsFollowed) {
    manager_.stop();
    SampleProgram sample;
    sample.window(one());
    startManager(QLatin1String(GetParam()));
    EXPECT_TRUE(waitForApplication(sample.pid()));
}

TEST_P(LinuxWorkspaceTest, WaylandSession_IsSaidToBeSeenInPart) {
    workspace_.reset();
    qputenv("WAYLAND_DISPLAY", "wayland-nowhere");
    startWorkspace();
    SampleProgram sample;
    sample.window(one());
    EXPECT_TRUE(waitForApplication(sample.pid()));
    qunsetenv("WAYLAND_DISPLAY");
    const QString partly = QStringLiteral("This is a Wayland session: only the windows of "
                                          "applications that use Xwayland are seen.");
    EXPECT_THAT(log_.lines(), ElementsAre(partly));
    ASSERT_FALSE(workspace_->tellsFront());
    EXPECT_EQ(workspace_->tellsFront().error(), partly);
    EXPECT_TRUE(workspace_->canHide());
}

INSTANTIATE_TEST_SUITE_P(Managers, LinuxWorkspaceTest, testing::Values("openbox", "xfwm4"),
                         [](const auto& tested) { return std::string(tested.param); });

/// Without a window manager: the sample writes the list itself, because managers take minutes for
/// so many windows.
using CrowdedWorkspaceTest = WorkspaceFixture;

TEST_F(CrowdedWorkspaceTest, TwoThousandWindows_AreAllSeen) {
    startWorkspace();
    SampleProgram sample;
    sample.tell(QStringLiteral("many 2000"));
    sample.tell(QStringLiteral("publish"));
    ASSERT_TRUE(waitForFront(sample.pid()));
    EXPECT_THAT(workspace_->runningApplications(), SizeIs(1));
    startWorkspace(); // all of them at once
    ASSERT_TRUE(waitForFront(sample.pid()));
    workspace_->hide(*application(sample.pid()));
    workspace_->terminate(*application(sample.pid()));
    EXPECT_TRUE(application(sample.pid()));
}

/// Without a server to connect to.
class BlindWorkspaceTest : public WorkspaceFixture {
  protected:
    void expectNothing() {
        startWorkspace();
        ASSERT_TRUE(waitUntil([this] { return !log_.lines().isEmpty(); }));
        EXPECT_TRUE(workspace_->runningApplications().empty());
        EXPECT_FALSE(workspace_->frontmostApplication());
        RunningApplication nobody;
        nobody.processIdentifier = 1;
        workspace_->hide(nobody);
        workspace_->terminate(nobody);
        EXPECT_THAT(log_.lines(), ElementsAre(QLatin1String(blindness)));
        EXPECT_THAT(events_, IsEmpty());
        ASSERT_FALSE(workspace_->tellsFront());
        EXPECT_EQ(workspace_->tellsFront().error(), QStringLiteral("no X server"));
        ASSERT_FALSE(workspace_->canHide());
        EXPECT_EQ(workspace_->canHide().error(), QStringLiteral("no X server"));
    }
};

TEST_F(BlindWorkspaceTest, NoDisplay_NothingIsSeenAndSaidOnce) {
    qunsetenv("DISPLAY");
    expectNothing();
}

TEST_F(BlindWorkspaceTest, DisplayOfAnotherMachine_IsNotAskedAboutProcesses) {
    qputenv("DISPLAY", "elsewhere.invalid:0");
    expectNothing();
}

TEST_F(BlindWorkspaceTest, NonsenseForADisplay_IsNone) {
    qputenv("DISPLAY", "nonsense");
    expectNothing();
}

TEST_F(BlindWorkspaceTest, ServerThatHasGone_NothingIsSeenAndSaidOnceUntilItIsBack) {
    server_->kill();
    expectNothing();
    ASSERT_TRUE(server_->restart());
    if (!isInstalled("openbox") || !isInstalled("xprop")) {
        GTEST_SKIP() << "skipped: openbox or xprop is not installed";
    }
    startManager(QStringLiteral("openbox"));
    SampleProgram sample;
    sample.window();
    EXPECT_TRUE(waitForApplication(sample.pid()));
    EXPECT_THAT(log_.lines(), SizeIs(1));
}

} // namespace quorvane::test
