#include "tests/integration/helperclient/RootHelperFixture.h"

namespace quorvane::test {
namespace {

/// A power-profiles service that holds what it is asked to.
class FakePowerProfiles {
  public:
    FakePowerProfiles(const PrivateBus& bus, const char* name, const char* path)
        : name_(QString::fromLatin1(name)), path_(QString::fromLatin1(path)),
          service_(bus, name_, [this](const QDBusMessage& call) { return answer(call); }) {}

    bool refuses = false;
    int releases = 0;

    [[nodiscard]] int holds() const { return static_cast<int>(cookies_.size()); }

    [[nodiscard]] const QStringList& profiles() const { return profiles_; }

    [[nodiscard]] FakeService& service() { return service_; }

    /// The user chooses a profile himself: the service drops all holds.
    void userChoosesAProfile() {
        for (const uint cookie : std::exchange(cookies_, {})) {
            service_.emitSignal(path_, name_, QStringLiteral("ProfileReleased"), {cookie});
        }
    }

  private:
    QDBusMessage answer(const QDBusMessage& call) {
        if (refuses) {
            return call.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no"));
        }
        if (call.member() == QLatin1String("HoldProfile")) {
            profiles_ += call.arguments().at(0).toString();
            cookies_.insert(++last_);
            return call.createReply(last_);
        }
        ++releases;
        return cookies_.remove(call.arguments().at(0).toUInt())
                   ? call.createReply()
                   : call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("no hold"));
    }

    QString name_;
    QString path_;
    FakeService service_;
    QSet<uint> cookies_;
    QStringList profiles_;
    uint last_ = 40;
};

constexpr const char* newName = "org.freedesktop.UPower.PowerProfiles";
constexpr const char* newPath = "/org/freedesktop/UPower/PowerProfiles";
constexpr const char* oldName = "net.hadess.PowerProfiles";
constexpr const char* oldPath = "/net/hadess/PowerProfiles";
constexpr const char* platformProfile = "firmware/acpi/platform_profile";

class HelperLowPowerTest : public RootHelperFixture {
  protected:
    void SetUp() override {
        RootHelperFixture::SetUp();
        start();
    }

    std::string enable() { return caller.ask(helpernames::enableLowPowerMode); }

    std::string disable() { return caller.ask(helpernames::disableLowPowerMode); }

    void putProfiles() const {
        putAttribute("firmware/acpi/platform_profile_choices", "low-power balanced performance");
        putAttribute(platformProfile, "balanced");
    }

    HelperCaller caller{bus, QStringLiteral("caller")};
    HelperCaller other{bus, QStringLiteral("other")};
};

TEST_F(HelperLowPowerTest, ProfilesService_IsHeldAtPowerSaverUntilItIsDisabled) {
    FakePowerProfiles profiles(bus, newName, newPath);
    EXPECT_EQ(enable(), "Low power mode is on (power profile \"power-saver\")");
    EXPECT_EQ(profiles.profiles(), QStringList(QStringLiteral("power-saver")));
    EXPECT_EQ(profiles.holds(), 1);
    EXPECT_EQ(disable(), "Low power mode is as it was found (power profile \"power-saver\")");
    EXPECT_EQ(profiles.holds(), 0);
}

TEST_F(HelperLowPowerTest, ServiceWithTheOlderName_IsUsedToo) {
    FakePowerProfiles profiles(bus, oldName, oldPath);
    enable();
    EXPECT_EQ(profiles.holds(), 1);
}

TEST_F(HelperLowPowerTest, ServiceWithBothNames_IsHeldOnce) {
    FakePowerProfiles older(bus, oldName, oldPath);
    FakePowerProfiles newer(bus, newName, newPath);
    enable();
    EXPECT_EQ(newer.holds(), 1);
    EXPECT_EQ(older.holds(), 0);
}

TEST_F(HelperLowPowerTest, NoService_TheFirmwaresProfileIsSet) {
    putProfiles();
    EXPECT_EQ(enable(), "Low power mode is on (platform_profile)");
    EXPECT_EQ(attribute(platformProfile), "low-power");
    disable();
    EXPECT_EQ(attribute(platformProfile), "balanced");
}

TEST_F(HelperLowPowerTest, NeitherServiceNorProfiles_IsSaid) {
    EXPECT_EQ(enable(), "This machine has no low power mode");
    EXPECT_EQ(disable(), "Low power mode was not on");
}

TEST_F(HelperLowPowerTest, ServiceThatRefuses_IsSaidAndHoldsNothing) {
    FakePowerProfiles profiles(bus, newName, newPath);
    profiles.refuses = true;
    EXPECT_NE(enable().find("refused"), std::string::npos);
    profiles.refuses = false;
    EXPECT_EQ(enable(), "Low power mode is on (power profile \"power-saver\")");
}

TEST_F(HelperLowPowerTest, CallerWhoLeavesTheBus_HoldsItNoLonger) {
    FakePowerProfiles profiles(bus, newName, newPath);
    enable();
    caller.leave();
    EXPECT_TRUE(waitUntil([&] { return profiles.holds() == 0; }));
}

TEST_F(HelperLowPowerTest, TwoCallers_ItIsOnUntilTheLastGivesUp) {
    FakePowerProfiles profiles(bus, newName, newPath);
    enable();
    other.ask(helpernames::enableLowPowerMode);
    EXPECT_EQ(profiles.holds(), 1);
    EXPECT_EQ(disable(), "Another program keeps low power mode on");
    EXPECT_EQ(profiles.holds(), 1);
    other.ask(helpernames::disableLowPowerMode);
    EXPECT_EQ(profiles.holds(), 0);
}

TEST_F(HelperLowPowerTest, UserWhoChoosesAnotherProfile_KeepsIt) {
    FakePowerProfiles profiles(bus, newName, newPath);
    enable();
    profiles.userChoosesAProfile();
    EXPECT_EQ(disable(), "Low power mode is as it was found (power profile \"power-saver\")");
    EXPECT_EQ(profiles.profiles().size(), 1) << "it was taken from him again";
}

TEST_F(HelperLowPowerTest, ServiceThatRestarts_IsHeldAgain) {
    auto profiles = std::make_unique<FakePowerProfiles>(bus, newName, newPath);
    enable();
    profiles.reset();
    FakePowerProfiles restarted(bus, newName, newPath);
    EXPECT_TRUE(waitUntil([&] { return restarted.holds() == 1; }));
    disable();
    EXPECT_EQ(restarted.holds(), 0);
}

TEST_F(HelperLowPowerTest, DisabledWhileTheServiceIsAway_IsNotHeldWhenItComesBack) {
    auto profiles = std::make_unique<FakePowerProfiles>(bus, newName, newPath);
    enable();
    profiles.reset();
    disable();
    FakePowerProfiles restarted(bus, newName, newPath);
    EXPECT_EQ(disable(), "Low power mode was not on");
    EXPECT_EQ(restarted.holds(), 0);
}

TEST_F(HelperLowPowerTest, DisabledWhileARestartedServiceIsAsked_IsNotHeldInTheEnd) {
    auto profiles = std::make_unique<FakePowerProfiles>(bus, newName, newPath);
    enable();
    profiles.reset();
    FakePowerProfiles restarted(bus, newName, newPath);
    restarted.service().hold();
    ASSERT_TRUE(waitUntil([&] { return !restarted.service().calls().isEmpty(); }));
    disable();
    restarted.service().release();
    EXPECT_TRUE(waitUntil([&] { return restarted.releases == 1; }));
    EXPECT_EQ(restarted.holds(), 0);
}

TEST_F(HelperLowPowerTest, ServiceThatTakesItsTime_DisableWaitsForTheHold) {
    FakePowerProfiles profiles(bus, newName, newPath);
    profiles.service().hold();
    QDBusPendingCall on = caller.begin(helpernames::enableLowPowerMode);
    QDBusPendingCall off = caller.begin(helpernames::disableLowPowerMode);
    ASSERT_TRUE(waitUntil([&] { return !profiles.service().calls().isEmpty(); }));
    profiles.service().release();
    ASSERT_TRUE(waitUntil([&] { return on.isFinished() && off.isFinished(); }));
    EXPECT_EQ(profiles.holds(), 0);
}

} // namespace
} // namespace quorvane::test
