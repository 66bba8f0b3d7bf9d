#include "modules/TurboModule.h"

#include "mode/BatterySaver.h"
#include "platform/linux/common/HelperNames.h"
#include "tests/support/QtPrinters.h"
#include "tests/unit/simulated/SimulatedLaptopTest.h"

#include <algorithm>
#include <utility>

namespace quorvane::test {

namespace {

const QString turboConfiguration = helpernames::runTimeConfiguration;
const QString extensionLister = QStringLiteral("/usr/sbin/kextstat");
const QString cputunePath = QStringLiteral("/opt/Quorvane.app/Contents/Resources/CPUTune.kext");
const QString venturaPath =
    QStringLiteral("/opt/Quorvane.app/Contents/Resources/DisableTurboBoost.64bits.kext");
const QString loadCputune = QStringLiteral("load ") + cputunePath;
const QString unloadCputune = QStringLiteral("unload ") + cputunePath;
const QString loadVentura = QStringLiteral("load ") + venturaPath;
const QString unloadVentura = QStringLiteral("unload ") + venturaPath;
const QString lowPowerOn = QStringLiteral("low power on");
const QString lowPowerOff = QStringLiteral("low power off");

QByteArray infoWithVersion(const char* version) {
    return QByteArray("<plist version=\"1.0\"><dict><key>CFBundleVersion</key><string>") + version +
           "</string></dict></plist>";
}

class TurboModuleTest : public SimulatedLaptopTest {
  protected:
    TurboModuleTest() {
        bundleVersion("1.0");
        laptop().bundle().setResource(
            QStringLiteral("DisableTurboBoost.64bits.kext/Contents/Info.plist"),
            infoWithVersion("1.0"));
        helper().setInstalled(true);
        helper().setSendListener([this](const QString& call) {
            if (call != QLatin1String("version")) {
                sent_.append(call);
                writesBefore_ = laptop().files().writes().size();
            }
        });
        useModules([this] {
            ModuleList modules;
            modules.push_back(makeModule<quorvane::TurboModule>());
            module_ = dynamic_cast<quorvane::TurboModule*>(modules.back().get());
            return modules;
        });
    }

    SimulatedHelper& helper() { return laptop().helperInstaller(); }

    void bundleVersion(const char* version) {
        laptop().bundle().setResource(QStringLiteral("CPUTune.kext/Contents/Info.plist"),
                                      infoWithVersion(version));
    }

    void listed(const QByteArray& output) {
        laptop().tasks().setBehaviour(extensionLister, {Seconds(0), output});
    }

    void loadedVersion(const QByteArray& version) {
        listed("    1    0 0  0  0  com.TarnwickStudios.cputune (" + version + ")\n");
    }

    void useSystem(bool version13OrLater, std::optional<QString> machine) {
        laptop().operatingSystem().version13OrLater = version13OrLater;
        laptop().operatingSystem().machineName = std::move(machine);
    }

    void useIntel13() { useSystem(true, QStringLiteral("x86_64")); }

    void useOther13() { useSystem(true, QStringLiteral("aarch64")); }

    static void switchMode(bool on) { BatterySaver::batterySaver().setEnabled(on); }

    quorvane::TurboModule& module() { return *module_; }

    /// The commands that were sent since the last time, all of which have arrived.
    QStringList sent() {
        const QStringList sent = std::exchange(sent_, {});
        arrived_ += sent;
        EXPECT_TRUE(comesTrue([this] {
            QStringList calls = helper().calls();
            calls.removeIf([](const QString& call) {
                return call == QLatin1String("version") || call == QLatin1String("connect") ||
                       call == QLatin1String("install") || call == QLatin1String("remove");
            });
            return calls == arrived_;
        }));
        return sent;
    }

    /// What is in the turboConfiguration file, or nothing.
    std::optional<QByteArray> configured() {
        const QMap<QString, QByteArray> files = laptop().files().files();
        return files.contains(turboConfiguration) ? std::optional(files.value(turboConfiguration))
                                                  : std::nullopt;
    }

    [[nodiscard]] qsizetype logged(const QString& line) { return laptop().logSink().count(line); }

    [[nodiscard]] bool getsLogged(const QString& line, int times = 1) {
        return comesTrue([&] { return logged(line) == times; });
    }

    /// How many files had been written when the last command was sent.
    [[nodiscard]] qsizetype writesBefore() const { return writesBefore_; }

    void expectNewer(const char* available, const char* running, bool isNewer) {
        bundleVersion(available);
        loadedVersion(running);
        EXPECT_EQ(module().kextNeedsUpdate(), isNewer) << available << " against " << running;
    }

  private:
    quorvane::TurboModule* module_ = nullptr;
    QStringList sent_;
    QStringList arrived_;
    qsizetype writesBefore_ = 0;
};

} // namespace

// --- before version 13

TEST_F(TurboModuleTest, NotLoadedBeforeVersion13_ActivationInstallsThenWritesZero) {
    start();
    EXPECT_EQ(sent(), QStringList());
    EXPECT_EQ(configured(), std::nullopt);

    switchMode(true);
    EXPECT_EQ(logged(QStringLiteral("Installing Kext (CPUTune)...")), 1);
    EXPECT_EQ(sent(), QStringList{loadCputune});
    EXPECT_EQ(writesBefore(), 0) << "the command comes first";
    EXPECT_EQ(configured(), "0");
    EXPECT_TRUE(laptop().files().isForEverybody(turboConfiguration));
    EXPECT_TRUE(getsLogged(QStringLiteral("Attempted loading kext [CPUTune.kext]: loaded")));

    switchMode(false);
    EXPECT_EQ(configured(), "1");
    EXPECT_EQ(sent(), QStringList());
}

TEST_F(TurboModuleTest, OlderLoadedBeforeVersion13_StartUnloadsAndLoadsBackToBack) {
    loadedVersion("1.9");
    bundleVersion("1.10");
    start();
    EXPECT_EQ(sent(), (QStringList{unloadCputune, loadCputune}));
    EXPECT_EQ(logLines().mid(0, 3),
              (QStringList{QStringLiteral("Is NOT Ventura"),
                           QStringLiteral("Checked kext version: (Available: 1.10, Running: 1.9)"),
                           QStringLiteral("Upgrading Kext...")}));
    EXPECT_TRUE(getsLogged(QStringLiteral("Attempted unloading kext [CPUTune.kext]: unloaded")));
    EXPECT_TRUE(getsLogged(QStringLiteral("Attempted loading kext [CPUTune.kext]: loaded")));
    EXPECT_EQ(configured(), std::nullopt);
}

TEST_F(TurboModuleTest, SameVersionLoadedBeforeVersion13_ActivationOnlyWritesZero) {
    loadedVersion("1.0");
    start();
    switchMode(true);
    EXPECT_EQ(configured(), "0");
    EXPECT_EQ(sent(), QStringList());
    EXPECT_EQ(logged(QStringLiteral("Checked kext version: (Available: 1.0, Running: 1.0)")), 2)
        << "at the start and at the activation";
    EXPECT_EQ(logged(QStringLiteral("Upgrading Kext...")), 0);
}

TEST_F(TurboModuleTest, OtherProcessorBeforeVersion13_UsesTheSameExtension) {
    useSystem(false, QStringLiteral("aarch64"));
    start();
    switchMode(true);
    EXPECT_EQ(sent(), QStringList{loadCputune});
    EXPECT_EQ(configured(), "0");
}

TEST_F(TurboModuleTest, SleepBeforeVersion13_WritesOneAndWakingZero) {
    start();
    switchMode(true);
    laptop().sleepEvents().sleep();
    EXPECT_EQ(configured(), "1");
    EXPECT_EQ(sent(), QStringList{loadCputune}) << "the extension stays loaded";
    loadedVersion("1.0");
    laptop().sleepEvents().wake();
    EXPECT_EQ(configured(), "0");
    EXPECT_EQ(sent(), QStringList());
}

TEST_F(TurboModuleTest, FileThatCannotBeWritten_IsLoggedBothWaysAndTheModuleRunsAllTheSame) {
    start();
    laptop().files().setReadOnly(true);
    switchMode(true);
    const QString reason = turboConfiguration + QStringLiteral(": Read-only file system");
    EXPECT_EQ(logged(QStringLiteral("Error disabling Turbo Boost: ") + reason), 1);
    EXPECT_TRUE(module().running());
    switchMode(false);
    EXPECT_EQ(logged(QStringLiteral("Error enabling Turbo Boost: ") + reason), 1);
    EXPECT_FALSE(module().running());
}

TEST_F(TurboModuleTest, Lister_IsRunOncePerLookAndTwiceForAnUpdateCheck) {
    loadedVersion("1.0");
    start();
    const qsizetype before = laptop().tasks().runs().size();
    EXPECT_TRUE(module().kextRunning());
    EXPECT_EQ(laptop().tasks().runs().size(), before + 1);
    module().loadKext();
    EXPECT_EQ(laptop().tasks().runs().size(), before + 3);
    for (const SimulatedTasks::Run& run : laptop().tasks().runs()) {
        EXPECT_EQ(run.launchPath, extensionLister);
        EXPECT_EQ(run.arguments, (QStringList{QStringLiteral("-l"), QStringLiteral("-b"),
                                              QStringLiteral("com.TarnwickStudios.cputune")}));
    }
}

TEST_F(TurboModuleTest, ListerThatHasEndedWhenItIsLookedAt_HoldsNothingUp) {
    const Seconds before = laptop().clock().monotonic();
    loadedVersion("1.0");
    start();
    switchMode(true);
    EXPECT_EQ(configured(), "0");
    EXPECT_EQ(laptop().tasks().runs().size(), 5)
        << "three times at the start, twice at the activation";
    EXPECT_EQ(laptop().clock().monotonic(), before);
}

TEST_F(TurboModuleTest, ListersOutput_HasTheVersionInItsFirstParentheses) {
    start();
    const std::pair<const char*, std::optional<QString>> cases[] = {
        {"", std::nullopt},
        {"no parentheses here", std::nullopt},
        {"name (1.0)\n", QStringLiteral("1.0")},
        {"name (1.0) UUID <1 (2.0)>", QStringLiteral("1.0")},
        {"name (1.0", QStringLiteral("1.0")},
        {"name ()", QString(QLatin1String(""))},
        {")2.0(", QStringLiteral("2.0")},
    };
    for (const auto& [output, version] : cases) {
        listed(output);
        EXPECT_EQ(module().runningKextVersion(), version) << output;
        EXPECT_EQ(module().kextRunning(), version.has_value()) << output;
    }
}

TEST_F(TurboModuleTest, ListerThatCannotBeStarted_CountsAsNothingLoaded) {
    laptop().tasks().setBehaviour(extensionLister, {Seconds(0), {}, false});
    start();
    switchMode(true);
    EXPECT_EQ(sent(), QStringList{loadCputune});
}

TEST_F(TurboModuleTest, GarbageOfTheLister_CountsAsNothingLoadedAndIsInstalledAtTheActivation) {
    listed("kextstat: everything is on fire\n");
    start();
    EXPECT_EQ(sent(), QStringList());
    switchMode(true);
    EXPECT_EQ(sent(), QStringList{loadCputune});
}

TEST_F(TurboModuleTest, Versions_AreComparedWithTheirNumbersAsNumbers) {
    start();
    expectNewer("1.10", "1.9", true);
    expectNewer("1.9", "1.10", false);
    expectNewer("1.0", "1.0", false);
    expectNewer("2", "1.99.99", true);
    expectNewer("1.0.1", "1.0", true);
    expectNewer("1.0", "1.0.1", false);
    expectNewer("1.010", "1.9", true);
    expectNewer("99999999999999999999999", "99999999999999999999998", true);
    expectNewer("100000000000000000000000", "99999999999999999999999", true);
    expectNewer("1.0b2", "1.0b10", false);
    expectNewer("1.0b", "1.0a", true);
    expectNewer("", "1.0", false);
    expectNewer("1.0", "", true);
}

TEST_F(TurboModuleTest, MissingExtensionInTheBundle_IsNeverNewerAndItsNilIsLogged) {
    laptop().bundle().clearResources();
    loadedVersion("1.0");
    start();
    EXPECT_EQ(quorvane::TurboModule::kextPath(), std::nullopt);
    EXPECT_EQ(quorvane::TurboModule::kextVersion(), std::nullopt);
    EXPECT_EQ(logged(QStringLiteral("Checked kext version: (Available: (null), Running: 1.0)")), 1);
    EXPECT_EQ(sent(), QStringList());

    listed({});
    switchMode(true);
    EXPECT_EQ(sent(), QStringList{QStringLiteral("load")}) << "without a path";
    EXPECT_TRUE(getsLogged(QStringLiteral("Attempted loading kext [(null)]: loaded")));
}

TEST_F(TurboModuleTest, NothingLoaded_NeedsNoUpdateAndItsNilIsLogged) {
    start();
    EXPECT_FALSE(module().kextNeedsUpdate());
    EXPECT_EQ(logged(QStringLiteral("Checked kext version: (Available: 1.0, Running: (null))")), 1);
}

TEST_F(TurboModuleTest, ExtensionsDescriptionThatMakesNoSense_HasNoVersion) {
    const QString file = QStringLiteral("CPUTune.kext/Contents/Info.plist");
    for (const char* const text :
         {"nonsense", "<plist version=\"1.0\"><dict/></plist>",
          "<plist version=\"1.0\"><dict><key>CFBundleVersion</key><true/></dict></plist>"}) {
        laptop().bundle().setResource(file, text);
        EXPECT_EQ(quorvane::TurboModule::kextVersion(), std::nullopt) << text;
        EXPECT_EQ(quorvane::TurboModule::kextPath(), cputunePath);
    }
}

TEST_F(TurboModuleTest, UnloadKext_UnloadsTheExtension) {
    start();
    module().unloadKext();
    EXPECT_EQ(logged(QStringLiteral("Unloading Kext...")), 1);
    EXPECT_EQ(sent(), QStringList{unloadCputune});
    EXPECT_TRUE(getsLogged(QStringLiteral("Attempted unloading kext [CPUTune.kext]: unloaded")));
}

// --- from version 13

TEST_F(TurboModuleTest, Version13OnIntel_ActivationLoadsAndDeactivationAndEverySleepUnload) {
    useIntel13();
    start();
    EXPECT_EQ(sent(), QStringList{unloadVentura}) << "at every start";
    switchMode(true);
    EXPECT_EQ(sent(), QStringList{loadVentura});
    EXPECT_EQ(logged(QStringLiteral("Installing Kext (DisableTurboBoost)...")), 1);
    laptop().sleepEvents().sleep();
    EXPECT_EQ(sent(), QStringList{unloadVentura});
    laptop().sleepEvents().wake();
    EXPECT_EQ(sent(), QStringList{loadVentura});
    switchMode(false);
    EXPECT_EQ(sent(), QStringList{unloadVentura});
    laptop().sleepEvents().sleep();
    EXPECT_EQ(sent(), QStringList{unloadVentura});
    EXPECT_TRUE(laptop().files().writes().filter(turboConfiguration).isEmpty());
    EXPECT_TRUE(laptop().tasks().runs().isEmpty());
    EXPECT_TRUE(getsLogged(
        QStringLiteral("Attempted unloading kext [DisableTurboBoost.64bits.kext]: unloaded"), 4));
    EXPECT_TRUE(getsLogged(
        QStringLiteral("Attempted loading kext [DisableTurboBoost.64bits.kext]: loaded"), 2));
}

TEST_F(TurboModuleTest, Version13OnAnotherProcessor_SwitchesTheSystemsOwnMode) {
    useOther13();
    helper().setReply(lowPowerOn, QStringLiteral("profile power-saver"));
    helper().setReply(lowPowerOff, QStringLiteral("profile balanced"));
    start();
    EXPECT_EQ(sent(), QStringList{lowPowerOff}) << "at every start";
    switchMode(true);
    EXPECT_EQ(sent(), QStringList{lowPowerOn});
    laptop().sleepEvents().sleep();
    EXPECT_EQ(sent(), QStringList{lowPowerOff});
    laptop().sleepEvents().wake();
    EXPECT_EQ(sent(), QStringList{lowPowerOn});
    switchMode(false);
    EXPECT_EQ(sent(), QStringList{lowPowerOff});
    EXPECT_TRUE(getsLogged(
        QStringLiteral("Attempted disable macOS low power mode: profile power-saver"), 2));
    EXPECT_TRUE(
        getsLogged(QStringLiteral("Attempted disable macOS low power mode: profile balanced"), 3));
    EXPECT_TRUE(laptop().files().writes().filter(turboConfiguration).isEmpty());
}

TEST_F(TurboModuleTest, Version13_CreationLogsThenSwitchesTurboOn) {
    useIntel13();
    startWithoutMainQueue();
    EXPECT_EQ(logLines().mid(0, 2),
              (QStringList{QStringLiteral("Is Ventura"), QStringLiteral("Unloading Kext...")}));
    EXPECT_TRUE(module().isVentura());
}

TEST_F(TurboModuleTest, Version13WithoutTheExtension_SendsNoPathAndLogsNil) {
    laptop().bundle().clearResources();
    useIntel13();
    start();
    EXPECT_EQ(quorvane::TurboModule::kextPathVentura(), std::nullopt);
    EXPECT_EQ(sent(), QStringList{QStringLiteral("unload")});
    EXPECT_TRUE(getsLogged(QStringLiteral("Attempted unloading kext [(null)]: unloaded")));
}

TEST_F(TurboModuleTest, Processor_IsIntelOnlyUnderExactlyThatName) {
    for (const auto& [name, isIntel] : {std::pair("x86_64", true),
                                        {"i686", false},
                                        {"X86_64", false},
                                        {"x86_64h", false},
                                        {"", false}}) {
        useSystem(true, QString::fromLatin1(name));
        EXPECT_EQ(quorvane::TurboModule::isIntelProcessor(), isIntel) << name;
    }
    useSystem(true, std::nullopt);
    EXPECT_FALSE(quorvane::TurboModule::isIntelProcessor());
}

// --- sleep and waking

TEST_F(TurboModuleTest, SleepWhileNotRunning_StillSwitchesTurboOn) {
    start();
    laptop().sleepEvents().sleep();
    EXPECT_EQ(logged(QStringLiteral("Going to Sleep: Disable CPU module")), 1);
    EXPECT_EQ(configured(), "1");
}

TEST_F(TurboModuleTest, WakeWhileNotRunning_OnlyLogs) {
    useIntel13();
    start();
    EXPECT_EQ(sent(), QStringList{unloadVentura});
    laptop().sleepEvents().wake();
    EXPECT_EQ(logged(QStringLiteral("Wake from Sleep: CPU module still disabled")), 1);
    EXPECT_EQ(sent(), QStringList());
}

TEST_F(TurboModuleTest, WakeWhileRunning_IsLogged) {
    start();
    switchMode(true);
    laptop().sleepEvents().wake();
    EXPECT_EQ(logged(QStringLiteral("Wake from Sleep: Re-enable CPU module")), 1);
}

// --- failures of the helper

TEST_F(TurboModuleTest, HelperThatIsGone_IsLoggedAndTheModuleRunsAllTheSame) {
    useIntel13();
    start();
    EXPECT_EQ(sent(), QStringList{unloadVentura});
    helper().setState(SimulatedHelper::State::Gone);
    EXPECT_TRUE(module().activate());
    EXPECT_EQ(sent(), QStringList{loadVentura});
    EXPECT_TRUE(getsLogged(QStringLiteral("Execute block error: the helper cannot be reached")));
    EXPECT_TRUE(module().deactivate());
    EXPECT_EQ(
        logged(QStringLiteral("Attempted loading kext [DisableTurboBoost.64bits.kext]: loaded")),
        0);
}

TEST_F(TurboModuleTest, SilentHelper_HoldsNothingUp) {
    useIntel13();
    helper().setState(SimulatedHelper::State::Silent);
    start();
    EXPECT_TRUE(module().activate());
    EXPECT_EQ(sent(), (QStringList{unloadVentura, loadVentura}));
}

TEST_F(TurboModuleTest, FailureInTheHelpersReply_IsOnlyLogged) {
    helper().setReply(QStringLiteral("load"), QStringLiteral("no: 100% impossible %1"));
    start();
    switchMode(true);
    EXPECT_TRUE(getsLogged(
        QStringLiteral("Attempted loading kext [CPUTune.kext]: no: 100% impossible %1")));
    EXPECT_TRUE(module().running());
    EXPECT_EQ(configured(), "0");
}

// --- among the modules

TEST_F(TurboModuleTest, LabelImageAndIdentifier_AreItsOwn) {
    start();
    EXPECT_EQ(module().label(), QStringLiteral("Slowing Down Processor"));
    EXPECT_EQ(module().imageName(), QStringLiteral("icon-turbo"));
    EXPECT_EQ(module().identifier(), QStringLiteral("TurboModule"));
    EXPECT_TRUE(module().enabled()) << "unless the user says otherwise";
}

TEST_F(TurboModuleTest, SettingOff_NothingIsSwitchedWithTheMode) {
    store("TurboModuleActivated", false);
    start();
    switchMode(true);
    EXPECT_EQ(sent(), QStringList());
    EXPECT_EQ(configured(), std::nullopt);
    store("TurboModuleActivated", true);
    EXPECT_EQ(sent(), QStringList{loadCputune});
}

} // namespace quorvane::test
