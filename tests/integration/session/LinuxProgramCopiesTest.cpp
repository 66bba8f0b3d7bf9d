#include "platform/linux/session/LinuxProgramCopies.h"

#include "platform/linux/session/RunningCopies.h"
#include "tests/support/PrivateBus.h"

#include <gtest/gtest.h>

#include <thread>

namespace quorvane::test {
namespace {

const QString ownEdition = QStringLiteral("com.TarnwickStudios.quorvane");
const QString otherEdition = QStringLiteral("com.tarnwick.quorvane-setapp");

class LinuxProgramCopiesTest : public testing::Test {
  protected:
    void TearDown() override {
        QDBusConnection::disconnectFromBus(QStringLiteral("own"));
        QDBusConnection::disconnectFromBus(QStringLiteral("other"));
    }

    PrivateBus bus_{PrivateBus::Type::Session};
    RunningCopies own_{bus_.connection(QStringLiteral("own"))};
    RunningCopies other_{bus_.connection(QStringLiteral("other"))};
    LinuxProgramCopies copies_{&own_, ownEdition};
};

TEST_F(LinuxProgramCopiesTest, ThisProgram_CountsFromItsClaimOn) {
    EXPECT_EQ(copies_.running(ownEdition), 0);
    ASSERT_TRUE(own_.claim());
    EXPECT_EQ(copies_.running(ownEdition), 1);
    EXPECT_EQ(copies_.running(otherEdition), 0);
}

TEST_F(LinuxProgramCopiesTest, CopyOfEitherEdition_Counts) {
    ASSERT_TRUE(other_.announce(otherEdition));
    EXPECT_EQ(copies_.running(otherEdition), 1);
    EXPECT_FALSE(own_.claim());
    EXPECT_EQ(copies_.running(ownEdition), 1) << "this one";
    ASSERT_TRUE(other_.announce(ownEdition));
    EXPECT_EQ(copies_.running(ownEdition), 2) << "the other one too";
}

TEST_F(LinuxProgramCopiesTest, CopyThatTakesItsNameWhileThisOneLooks_Counts) {
    ASSERT_TRUE(other_.claim());
    ASSERT_FALSE(own_.claim());
    const std::jthread taking([](const std::stop_token& stop) {
        QDBusConnection bus(QStringLiteral("other"));
        while (!stop.stop_requested()) {
            EXPECT_TRUE(bus.registerService(ownEdition));
            EXPECT_TRUE(bus.unregisterService(ownEdition));
        }
    });
    for (int look = 0; look < 500; ++look) {
        ASSERT_EQ(copies_.running(ownEdition), 2) << "look " << look;
    }
}

TEST_F(LinuxProgramCopiesTest, WithoutASession_ThereAreNone) {
    ASSERT_TRUE(other_.announce(ownEdition));
    EXPECT_EQ(LinuxProgramCopies(nullptr, ownEdition).running(ownEdition), 0);
}

} // namespace
} // namespace quorvane::test
