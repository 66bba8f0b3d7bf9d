#include "tests/integration/helperclient/RootHelperFixture.h"

#include <array>
#include <random>

namespace quorvane::test {
namespace {

/// Random callers who load, unload, leave and come back, in random order.
class HelperInvariantsTest : public RootHelperFixture {
  protected:
    static constexpr std::size_t callerCount = 4;

    struct Caller {
        std::unique_ptr<HelperCaller> connection;
        bool holdsTurbo = false;
        bool followsFile = false;
    };

    void step(Caller& caller, int choice) {
        if (!caller.connection) {
            caller.connection =
                std::make_unique<HelperCaller>(bus, QStringLiteral("caller%1").arg(++connections));
        }
        switch (choice) {
        case 0:
            caller.connection->load();
            caller.holdsTurbo = true;
            break;
        case 1:
            caller.connection->unload();
            caller.holdsTurbo = false;
            break;
        case 2:
            caller.connection->load("CPUTune.kext");
            caller.followsFile = true;
            break;
        case 3:
            caller.connection->unload("CPUTune.kext");
            caller.followsFile = false;
            break;
        case 4:
            caller = Caller();
            break;
        case 5:
            polkit.allowsAll = false;
            caller.connection->load();
            polkit.allowsAll = true;
            break;
        default:
            fileSays = fileSays == '0' ? '1' : '0';
            putFile(options.paths.runTimeConfiguration, QByteArray(1, fileSays));
        }
    }

    [[nodiscard]] const char* expected() const {
        const bool isOff = std::any_of(callers.begin(), callers.end(), [this](const Caller& each) {
            return each.holdsTurbo || (each.followsFile && fileSays == '0');
        });
        return isOff ? "1" : "0";
    }

    std::array<Caller, callerCount> callers;
    char fileSays = '1';
    int connections = 0;
};

TEST_F(HelperInvariantsTest, TurboIsOff_ExactlyWhileSomebodyWhoIsThereWantsIt) {
    start();
    std::mt19937 random(4711); // NOLINT(cert-msc32-c): the same sequence at every run
    for (int number = 0; number < 300; ++number) {
        const int choice = std::uniform_int_distribution<int>(0, 6)(random);
        const auto who = std::uniform_int_distribution<std::size_t>(0, callerCount - 1)(random);
        step(callers.at(who), choice);
        ASSERT_TRUE(turboBecomes(expected())) << "step " << number << ", choice " << choice;
    }
    for (Caller& each : callers) {
        each = Caller();
    }
    EXPECT_TRUE(turboBecomes("0"));
    EXPECT_TRUE(waitUntil([this] { return !QFile::exists(place("run/putting-back.journal")); }));
    EXPECT_EQ(loadedList(), "");
}

} // namespace
} // namespace quorvane::test
