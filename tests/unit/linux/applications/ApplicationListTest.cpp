#include "platform/linux/applications/ApplicationList.h"

#include "tests/support/QtPrinters.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace quorvane::test {
namespace {

class ApplicationListTest : public testing::Test {
  protected:
    void update(const std::vector<SessionWindow>& windows, std::uint64_t active = 0) {
        list_.update(windows, WindowId{active}, [this](std::int32_t pid, const WindowNames& names) {
            ++questions_;
            return pid == 13 ? std::nullopt
                             : std::optional(ApplicationIdentity::Found{
                                   QString::fromUtf8(names.applicationId),
                                   QString::fromUtf8(names.windowClass)});
        });
    }

    [[nodiscard]] std::vector<std::int32_t> pids() const {
        std::vector<std::int32_t> pids;
        for (const RunningApplication& application : list_.applications()) {
            pids.push_back(application.processIdentifier);
        }
        return pids;
    }

    [[nodiscard]] std::vector<std::uint64_t> windowsOf(std::int32_t pid, bool onlyOrdinary) const {
        RunningApplication application;
        application.processIdentifier = pid;
        std::vector<std::uint64_t> ids;
        for (const WindowId id : list_.windowsOf(application, onlyOrdinary)) {
            ids.push_back(static_cast<std::uint64_t>(id));
        }
        return ids;
    }

    ApplicationList list_;
    int questions_ = 0;
};

SessionWindow ordinary(std::uint64_t id, std::int32_t pid, const char* applicationId = "app") {
    return {WindowId{id}, pid, true, {applicationId, "instance", "Class"}};
}

SessionWindow panel(std::uint64_t id, std::int32_t pid) {
    return {WindowId{id}, pid, false, {"panel", "panel", "Panel"}};
}

TEST_F(ApplicationListTest, Windows_MakeOneApplicationAProcess) {
    update({ordinary(1, 100), ordinary(2, 200), ordinary(3, 100)});
    EXPECT_THAT(pids(), ElementsAre(100, 200));
    EXPECT_THAT(windowsOf(100, true), ElementsAre(1U, 3U));
    EXPECT_EQ(questions_, 2);
}

TEST_F(ApplicationListTest, Order_IsThatOfComing) {
    update({ordinary(1, 100), ordinary(2, 200)});
    update({ordinary(2, 200), ordinary(3, 100), ordinary(4, 50)});
    EXPECT_THAT(pids(), ElementsAre(100, 200, 50));
    update({ordinary(4, 50), ordinary(5, 100)});
    EXPECT_THAT(pids(), ElementsAre(100, 50));
}

TEST_F(ApplicationListTest, WindowWithoutAProcessAndApplicationId_IsNobodys) {
    update({ordinary(1, 0, ""), ordinary(2, 13)}, 1);
    EXPECT_THAT(pids(), IsEmpty());
    EXPECT_FALSE(list_.front());
}

TEST_F(ApplicationListTest, ApplicationIdsWithoutAProcess_MakeOneApplicationEach) {
    update({ordinary(1, 0, "a"), ordinary(2, 100, "a"), ordinary(3, 0, "b"), ordinary(4, 0, "a")},
           4);
    ASSERT_THAT(pids(), ElementsAre(0, 100, 0));
    EXPECT_EQ(list_.applications().at(0).bundleIdentifier, QStringLiteral("a"));
    EXPECT_TRUE(list_.applications().at(0).isActive);
    EXPECT_EQ(list_.applications().at(2).bundleIdentifier, QStringLiteral("b"));
    EXPECT_THAT(list_.windowsOf(list_.applications().at(0), true),
                ElementsAre(WindowId{1}, WindowId{4}));
    update({ordinary(3, 0, "b")});
    EXPECT_THAT(pids(), ElementsAre(0));
    EXPECT_EQ(questions_, 3);
}

TEST_F(ApplicationListTest, OneOrdinaryWindow_MakesItRegular) {
    update({panel(1, 100)});
    EXPECT_EQ(list_.applications().at(0).activationPolicy, ActivationPolicy::Accessory);
    update({panel(1, 100), ordinary(2, 100)});
    EXPECT_EQ(list_.applications().at(0).activationPolicy, ActivationPolicy::Regular);
    EXPECT_THAT(windowsOf(100, true), ElementsAre(2U));
    EXPECT_THAT(windowsOf(100, false), ElementsAre(1U, 2U));
    update({panel(1, 100)});
    EXPECT_EQ(list_.applications().at(0).activationPolicy, ActivationPolicy::Accessory);
}

TEST_F(ApplicationListTest, Front_IsWhoOwnsTheActiveWindow) {
    update({ordinary(1, 100), ordinary(2, 200)}, 2);
    ASSERT_TRUE(list_.front());
    EXPECT_EQ(list_.front()->processIdentifier, 200);
    EXPECT_TRUE(list_.front()->isActive);
    EXPECT_FALSE(list_.applications().at(0).isActive);
    update({ordinary(1, 100), ordinary(2, 200)}, 9);
    EXPECT_FALSE(list_.front());
}

TEST_F(ApplicationListTest, KnownApplication_IsNotIdentifiedAgain) {
    update({ordinary(1, 100)});
    update({ordinary(1, 100), ordinary(2, 100, "other")}, 2);
    EXPECT_EQ(questions_, 1);
    EXPECT_EQ(list_.applications().at(0).bundleIdentifier, QStringLiteral("app"));
}

TEST_F(ApplicationListTest, UnknownApplication_IsIdentifiedByAFurtherWindow) {
    update({ordinary(1, 100, "")});
    update({ordinary(1, 100, "")}, 1);
    EXPECT_EQ(questions_, 1);
    EXPECT_EQ(list_.applications().at(0).bundleIdentifier, QString());
    EXPECT_EQ(list_.applications().at(0).localizedName, QStringLiteral("Class"));
    update({ordinary(1, 100, ""), ordinary(2, 100, "app")});
    EXPECT_EQ(list_.applications().at(0).bundleIdentifier, QStringLiteral("app"));
    EXPECT_EQ(questions_, 2);
}

} // namespace
} // namespace quorvane::test
