#include "platform/linux/statusitem/StatusImages.h"
#include "tests/integration/statusitem/StatusItemFixture.h"

#include <QDBusObjectPath>
#include <QFile>
#include <QTemporaryDir>

namespace quorvane::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

AttributedString text(const char* text) {
    return {QString::fromUtf8(text), {}, {}, 0};
}

} // namespace

class StatusItemTest : public StatusItemFixture {
  protected:
    [[nodiscard]] StatusNotifierToolTip toolTip() {
        return qdbus_cast<StatusNotifierToolTip>(property("ToolTip"));
    }
};

TEST_F(StatusItemTest, Properties_SayWhatHostsShow) {
    EXPECT_EQ(property("Category").toString(), QLatin1String("Hardware"));
    EXPECT_EQ(property("Id").toString(), QLatin1String("quorvane"));
    EXPECT_EQ(property("Title").toString(), QLatin1String("Quorvane"));
    EXPECT_EQ(property("Status").toString(), QLatin1String("Active"));
    EXPECT_EQ(property("IconThemePath").toString(), images_);
    EXPECT_EQ(property("IconName").toString(), QLatin1String("icon-infinity-off"));
    EXPECT_EQ(property("Menu").value<QDBusObjectPath>().path(), QLatin1String(menuPath));
    EXPECT_TRUE(property("ItemIsMenu").toBool());
    EXPECT_EQ(property("XAyatanaLabel").toString(), QString());
    EXPECT_EQ(toolTip().title, QLatin1String("Quorvane"));
    EXPECT_EQ(toolTip().text, QString());
}

TEST_F(StatusItemTest, TextBesideTheIcon_IsLabelAndTooltip) {
    item_->setAttributedTitle(text("85% "));
    EXPECT_EQ(property("XAyatanaLabel").toString(), QLatin1String("85% "));
    EXPECT_EQ(property("XAyatanaLabelGuide").toString(), QLatin1String("100% "));
    EXPECT_EQ(toolTip().text, QLatin1String("85%"));
}

TEST_F(StatusItemTest, RemainingTime_KeepsRoomForTheLongest) {
    for (const char* time : {"\u2009"
                             "0:07",
                             "\u2009"
                             "10:00",
                             "\u2009\u2026"}) {
        item_->setAttributedTitle(text(time));
        EXPECT_EQ(property("XAyatanaLabel").toString(), QString::fromUtf8(time));
        EXPECT_EQ(property("XAyatanaLabelGuide").toString(), QString::fromUtf8("\u2009"
                                                                               "00:00"));
    }
}

TEST_F(StatusItemTest, TextWithMarkup_IsNoMarkupInTheTooltip) {
    item_->setAttributedTitle(text("<b>&"));
    EXPECT_EQ(toolTip().text, QLatin1String("&lt;b&gt;&amp;"));
}

TEST_F(StatusItemTest, ImageSetSeveralTimesInOneTurn_OneNewIcon) {
    item_->setImage(QStringLiteral("icon-infinity-on"));
    item_->setImage(QStringLiteral("icon-infinity-off"));
    item_->setImage(QStringLiteral("battery-on-60"));
    settle();
    EXPECT_THAT(itemSignals_.names(), ElementsAre(QLatin1String("NewIcon")));
    EXPECT_EQ(property("IconName").toString(), QLatin1String("battery-on-60"));
}

TEST_F(StatusItemTest, TextSetSeveralTimesInOneTurn_OneNewLabelAndOneNewToolTip) {
    item_->setAttributedTitle(text("85% "));
    item_->setAttributedTitle(text("84% "));
    settle();
    ASSERT_THAT(itemSignals_.names(),
                ElementsAre(QLatin1String("XAyatanaNewLabel"), QLatin1String("NewToolTip")));
    EXPECT_THAT(itemSignals_.received().at(0).arguments(),
                ElementsAre(QVariant(QStringLiteral("84% ")), QVariant(QStringLiteral("100% "))));
}

TEST_F(StatusItemTest, EverythingSetToWhatItIs_NoSignal) {
    item_->setImage(QStringLiteral("icon-infinity-off"));
    item_->setTemplate(false);
    item_->setAttributedTitle({});
    item_->setLength(StatusItem::variableLength);
    item_->setImagePosition(ImagePosition::Left);
    settle();
    EXPECT_THAT(itemSignals_.names(), IsEmpty());
    EXPECT_THAT(menuSignals_.names(), IsEmpty());
}

TEST_F(StatusItemTest, ChangedAndChangedBackInOneTurn_NoSignal) {
    item_->setAttributedTitle(text("85% "));
    item_->setImage(QStringLiteral("icon-infinity-on"));
    item_->setAttributedTitle({});
    item_->setImage(QStringLiteral("icon-infinity-off"));
    settle();
    EXPECT_THAT(itemSignals_.names(), IsEmpty());
}

TEST_F(StatusItemTest, OnlyFontOfTheTextChanges_NoSignal) {
    item_->setAttributedTitle({QString(), 12.0, {}, 0});
    settle();
    EXPECT_THAT(itemSignals_.names(), IsEmpty());
}

TEST_F(StatusItemTest, ClicksAndScrollingOnTheIcon_DoNothing) {
    for (const char* method : {"Activate", "SecondaryActivate", "ContextMenu"}) {
        EXPECT_EQ(askItem(method, {10, 20}).errorName(), QString()) << method;
    }
    EXPECT_EQ(askItem("Scroll", {-1, QStringLiteral("vertical")}).errorName(), QString());
    EXPECT_EQ(askItem("XAyatanaSecondaryActivate", {17U}).errorName(), QString());
    settle();
    EXPECT_THAT(clicks_, IsEmpty());
    EXPECT_THAT(itemSignals_.names(), IsEmpty());
}

TEST_F(StatusItemTest, ImageThatIsNotThere_NoIconAndOneLogLine) {
    for (const char* name : {"no-such", "icon-infinity-on", "no-such", "../CMakeLists"}) {
        item_->setImage(QLatin1String(name));
    }
    settle();
    EXPECT_EQ(property("IconName").toString(), QString());
    EXPECT_THAT(log_.lines().filter(QLatin1String("\"no-such\"")), SizeIs(1));
}

TEST_F(StatusItemTest, FolderOfTheImagesIsNotThere_OneLogLineForAllImages) {
    item_.reset();
    LinuxStatusBar bar(program_, log_, QStringLiteral("/no/such/folder"));
    item_ = bar.statusItemWithLength(StatusItem::variableLength);
    item_->setImage(QStringLiteral("icon-infinity-on"));
    item_->setImage(QStringLiteral("icon-infinity-off"));
    EXPECT_EQ(property("IconName").toString(), QString());
    EXPECT_THAT(log_.lines().filter(QLatin1String("/no/such/folder")), SizeIs(1));
}

TEST_F(StatusItemTest, Stencil_IsTakenFromTheSymbolicImage) {
    item_->setTemplate(true);
    EXPECT_EQ(property("IconName").toString(),
              QLatin1String("quorvane_icon_infinity_off-symbolic"));
    item_->setImage(QStringLiteral("battery-charged"));
    EXPECT_EQ(property("IconName").toString(), QLatin1String("quorvane_battery_charged-symbolic"));
}

TEST_F(StatusItemTest, StencilWithoutSymbolicImage_IsTakenFromThePlainOne) {
    const QTemporaryDir folder;
    for (const char* name : {"one.svg", "two.png", "quorvane_two.png"}) {
        ASSERT_TRUE(QFile(folder.filePath(QLatin1String(name))).open(QIODevice::WriteOnly));
    }
    StatusImages images(folder.path(), log_);
    EXPECT_EQ(images.iconName(QStringLiteral("one"), true), QLatin1String("one"));
    EXPECT_EQ(images.iconName(QStringLiteral("two"), true), QLatin1String("quorvane_two"));
    EXPECT_EQ(images.iconName(QStringLiteral("two"), false), QLatin1String("quorvane_two"));
    EXPECT_EQ(images.iconName(QString(), true), QString());
    EXPECT_THAT(log_.lines().filter(QLatin1String("image")), IsEmpty());
}

TEST_F(StatusItemTest, SecondItem_LogsThatItIsNotShownAndLeavesTheFirst) {
    bar_.statusItemWithLength(StatusItem::variableLength).reset();
    EXPECT_TRUE(log_.contains("already a status item"));
    EXPECT_EQ(property("Id").toString(), QLatin1String("quorvane"));
}

TEST_F(StatusItemTest, ItemEnds_NothingAnswersAtItsPath) {
    item_.reset();
    EXPECT_NE(askItem("Activate", {0, 0}).errorName(), QString());
    EXPECT_NE(askMenu("AboutToShow", {0}).errorName(), QString());
}

TEST_F(StatusItemTest, NoSessionBus_LogLineAndNothingElse) {
    LinuxStatusBar bar(QDBusConnection(QStringLiteral("no such connection")), log_, images_);
    const auto item = bar.statusItemWithLength(StatusItem::variableLength);
    item->setMenu(menu_.root());
    item->setImage(QStringLiteral("icon-infinity-on"));
    item->setAttributedTitle(text("85% "));
    menu_.start().setState(true);
    settle();
    EXPECT_THAT(log_.lines().filter(QLatin1String("no session bus")), SizeIs(1));
}

} // namespace quorvane::test
