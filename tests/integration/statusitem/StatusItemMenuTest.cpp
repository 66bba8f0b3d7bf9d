#include "tests/integration/statusitem/StatusItemFixture.h"

namespace quorvane::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

QVariant numbers(const QList<int>& ids) {
    return QVariant::fromValue(ids);
}

QVariant events(const QList<DBusMenuEvent>& events) {
    return QVariant::fromValue(events);
}

DBusMenuEvent event(int id, const char* type) {
    return {id, QLatin1String(type), QDBusVariant(0), 0};
}

QList<int> numbersIn(const QDBusMessage& reply, int index) {
    return qdbus_cast<QList<int>>(reply.arguments().value(index));
}

constexpr int unknownId = 99;

} // namespace

class StatusItemMenuTest : public StatusItemFixture {
  protected:
    [[nodiscard]] QList<DBusMenuProperties> updated() {
        return qdbus_cast<QList<DBusMenuProperties>>(
            menuSignals_.received().value(0).arguments().value(0));
    }
};

TEST_F(StatusItemMenuTest, WholeLayout_HasEveryItemWithItsLook) {
    const DBusMenuLayout root = layout();
    EXPECT_EQ(root.id, 0);
    EXPECT_EQ(root.properties.value(QStringLiteral("children-display")), QStringLiteral("submenu"));
    ASSERT_THAT(root.children, SizeIs(5));
    const auto properties = [](const DBusMenuLayout& item) { return item.properties; };
    EXPECT_EQ(properties(root.children.at(0)),
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("Nothing to click")},
                           {QStringLiteral("enabled"), false}}));
    EXPECT_EQ(properties(root.children.at(1)),
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("Start now")},
                           {QStringLiteral("toggle-type"), QStringLiteral("checkmark")},
                           {QStringLiteral("toggle-state"), 0}}));
    EXPECT_EQ(properties(root.children.at(2)),
              (QVariantMap{{QStringLiteral("type"), QStringLiteral("separator")}}));
    EXPECT_EQ(properties(root.children.at(3)),
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("Keep__this")}}));
    EXPECT_EQ(properties(root.children.at(4)),
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("Settings")},
                           {QStringLiteral("children-display"), QStringLiteral("submenu")}}));
    ASSERT_THAT(root.children.at(4).children, SizeIs(3));
    EXPECT_EQ(root.children.at(4).children.at(2).id, 8);
}

TEST_F(StatusItemMenuTest, LayoutOfSomeLevels_GoesNoDeeper) {
    EXPECT_THAT(layout(0, 0).children, IsEmpty());
    const DBusMenuLayout one = layout(0, 1);
    ASSERT_THAT(one.children, SizeIs(5));
    EXPECT_THAT(one.children.at(4).children, IsEmpty());
    EXPECT_THAT(layout(0, 2).children.at(4).children, SizeIs(3));
}

TEST_F(StatusItemMenuTest, LayoutOfASubmenu_BeginsThere) {
    const DBusMenuLayout settings = layout(5);
    EXPECT_EQ(settings.id, 5);
    EXPECT_THAT(settings.children, SizeIs(3));
}

TEST_F(StatusItemMenuTest, LayoutWithSomeProperties_HasOnlyThose) {
    const DBusMenuLayout root = layout(0, -1, {QStringLiteral("label")});
    EXPECT_THAT(root.properties, IsEmpty());
    EXPECT_THAT(root.children.at(1).properties.keys(), ElementsAre(QLatin1String("label")));
}

TEST_F(StatusItemMenuTest, LayoutOfAnUnknownItem_Error) {
    EXPECT_EQ(askMenu("GetLayout", {unknownId, -1, QStringList()}).errorName(),
              QLatin1String("org.freedesktop.DBus.Error.InvalidArgs"));
    EXPECT_EQ(askMenu("GetLayout", {-1, -1, QStringList()}).errorName(),
              QLatin1String("org.freedesktop.DBus.Error.InvalidArgs"));
}

TEST_F(StatusItemMenuTest, GroupProperties_OfKnownItemsAndOfAll) {
    const auto ask = [this](const QList<int>& ids) {
        const QDBusMessage reply =
            askMenu("GetGroupProperties", {numbers(ids), QStringList(QStringLiteral("label"))});
        return qdbus_cast<QList<DBusMenuProperties>>(reply.arguments().value(0));
    };
    const QList<DBusMenuProperties> two = ask({8, unknownId, 4});
    ASSERT_THAT(two, SizeIs(2));
    EXPECT_EQ(two.at(0).id, 8);
    EXPECT_EQ(two.at(0).properties.value(QStringLiteral("label")), QStringLiteral("Quit"));
    EXPECT_THAT(ask({}), SizeIs(9));
}

TEST_F(StatusItemMenuTest, SingleProperty_ValueOrDefaultOrError) {
    const auto value = [this](int id, const char* name) {
        const QDBusMessage reply = askMenu("GetProperty", {id, QLatin1String(name)});
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    };
    EXPECT_EQ(value(8, "label"), QStringLiteral("Quit"));
    EXPECT_EQ(value(1, "enabled"), false);
    EXPECT_EQ(value(8, "enabled"), true);
    EXPECT_EQ(value(8, "visible"), true);
    EXPECT_NE(askMenu("GetProperty", {8, QStringLiteral("colour")}).errorName(), QString());
    EXPECT_NE(askMenu("GetProperty", {unknownId, QStringLiteral("label")}).errorName(), QString());
}

TEST_F(StatusItemMenuTest, TitleOfOneItemChanges_OneItemsPropertiesUpdatedAndNoLayoutUpdated) {
    menu_.start().setTitle(QStringLiteral("It is on"));
    settle();
    ASSERT_THAT(menuSignals_.names(), ElementsAre(QLatin1String("ItemsPropertiesUpdated")));
    ASSERT_THAT(updated(), SizeIs(1));
    EXPECT_EQ(updated().at(0).id, 2);
    EXPECT_EQ(updated().at(0).properties,
              (QVariantMap{{QStringLiteral("label"), QStringLiteral("It is on")}}));
    EXPECT_THAT(itemSignals_.names(), IsEmpty());
}

TEST_F(StatusItemMenuTest, CheckMarkChanges_OnlyItsStateIsTold) {
    menu_.start().setState(true);
    settle();
    ASSERT_THAT(menuSignals_.names(), ElementsAre(QLatin1String("ItemsPropertiesUpdated")));
    EXPECT_EQ(updated().at(0).properties, (QVariantMap{{QStringLiteral("toggle-state"), 1}}));
}

TEST_F(StatusItemMenuTest, SeveralItemsChangeInOneTurn_OneSignal) {
    menu_.start().setTitle(QStringLiteral("First"));
    menu_.start().setTitle(QStringLiteral("Second"));
    menu_.start().setState(true);
    menu_.description().setTitle(QStringLiteral("Other"));
    settle();
    EXPECT_THAT(menuSignals_.names(), SizeIs(1));
    EXPECT_THAT(updated(), SizeIs(2));
}

TEST_F(StatusItemMenuTest, TitleIsEmptied_IsToldAsRemoved) {
    menu_.description().setTitle({});
    settle();
    ASSERT_THAT(menuSignals_.names(), SizeIs(1));
    const auto removed = qdbus_cast<QList<DBusMenuRemovedProperties>>(
        menuSignals_.received().at(0).arguments().at(1));
    ASSERT_THAT(removed, SizeIs(1));
    EXPECT_THAT(removed.at(0).names, ElementsAre(QLatin1String("label")));
}

TEST_F(StatusItemMenuTest, TitleChangesAndChangesBack_NoSignal) {
    menu_.start().setTitle(QStringLiteral("Other"));
    menu_.start().setTitle(QStringLiteral("Start now"));
    menu_.start().setAttributedTitle({QStringLiteral("Start now"), 13.0, {}, 0});
    settle();
    EXPECT_THAT(menuSignals_.names(), IsEmpty());
}

TEST_F(StatusItemMenuTest, AnotherMenu_NewRevisionAndOneLayoutUpdated) {
    const uint before = askMenu("GetLayout", {0, 0, QStringList()}).arguments().at(0).toUInt();
    SampleMenu other([](const QString&) {});
    item_->setMenu(other.root());
    settle();
    ASSERT_THAT(menuSignals_.names(), ElementsAre(QLatin1String("LayoutUpdated")));
    EXPECT_EQ(menuSignals_.received().at(0).arguments().at(0).toUInt(), before + 1);
    menu_.start().setTitle(QStringLiteral("No longer shown"));
    settle();
    EXPECT_THAT(menuSignals_.names(), SizeIs(1));
    item_.reset();
}

TEST_F(StatusItemMenuTest, Click_PerformsTheAction) {
    EXPECT_EQ(sendEvent(2, "clicked").errorName(), QString());
    EXPECT_TRUE(waitUntil([this] { return clicks_ == QStringList(QStringLiteral("start")); }));
    EXPECT_EQ(sendEvent(8, "clicked").errorName(), QString());
    EXPECT_TRUE(waitUntil([this] { return clicks_.size() == 2; }));
}

TEST_F(StatusItemMenuTest, ClickOnWhatHasNoAction_DoesNothing) {
    for (const int id : {0, 1, 3, 5, 7}) {
        EXPECT_EQ(sendEvent(id, "clicked").errorName(), QString()) << id;
    }
    settle();
    EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(StatusItemMenuTest, ActionThatTakesLong_IsAnsweredBefore) {
    bool isAnswered = false;
    QDBusPendingCall click = QDBusPendingCall::fromCompletedCall(QDBusMessage());
    Menu menu;
    menu.addItem(std::make_unique<MenuItem>(QStringLiteral("Work"), [&isAnswered, &click] {
        const QDeadlineTimer end(std::chrono::seconds(5));
        while (!click.isFinished() && !end.hasExpired()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        isAnswered = click.isFinished();
    }));
    item_->setMenu(menu);
    QDBusMessage call =
        QDBusMessage::createMethodCall(program_.baseService(), QLatin1String(menuPath),
                                       dbusMenuInterface, QStringLiteral("Event"));
    call << 1 << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant(0)) << 0U;
    click = host_.asyncCall(call);
    EXPECT_TRUE(waitUntil([&isAnswered] { return isAnswered; }));
    item_.reset();
}

TEST_F(StatusItemMenuTest, ActionThatEndsTheItem_IsAnswered) {
    Menu menu;
    menu.addItem(std::make_unique<MenuItem>(QStringLiteral("End"), [this] { item_.reset(); }));
    item_->setMenu(menu);
    EXPECT_EQ(sendEvent(1, "clicked").errorName(), QString());
    EXPECT_TRUE(waitUntil([this] { return !item_; }));
}

TEST_F(StatusItemMenuTest, MenuOpens_WillOpenOnceHoweverTheHostTellsIt) {
    int openings = 0;
    QObject::connect(&menu_.root(), &Menu::willOpen, [&openings] { ++openings; });
    EXPECT_EQ(askMenu("AboutToShow", {0}).arguments().value(0), QVariant(false));
    sendEvent(0, "opened");
    EXPECT_EQ(openings, 1);
    sendEvent(0, "closed");
    sendEvent(0, "opened");
    EXPECT_EQ(openings, 2);
    EXPECT_EQ(askMenu("AboutToShowGroup", {numbers({0})}).errorName(), QString());
    EXPECT_EQ(openings, 3);
}

TEST_F(StatusItemMenuTest, SubmenuOpens_ItsWillOpenAndNotTheRoots) {
    int root = 0;
    int settings = 0;
    QObject::connect(&menu_.root(), &Menu::willOpen, [&root] { ++root; });
    QObject::connect(&menu_.settings(), &Menu::willOpen, [&settings] { ++settings; });
    (void)askMenu("AboutToShow", {5});
    sendEvent(5, "opened");
    EXPECT_EQ(root, 0);
    EXPECT_EQ(settings, 1);
}

TEST_F(StatusItemMenuTest, TitleSetWhileOpening_IsToldBeforeTheMenuShows) {
    QObject::connect(&menu_.root(), &Menu::willOpen,
                     [this] { menu_.description().setTitle(QStringLiteral("Fresh")); });
    (void)askMenu("AboutToShow", {0});
    EXPECT_THAT(menuSignals_.names(), ElementsAre(QLatin1String("ItemsPropertiesUpdated")));
}

TEST_F(StatusItemMenuTest, EventOfAnUnknownItem_Error) {
    EXPECT_EQ(sendEvent(unknownId, "clicked").errorName(),
              QLatin1String("org.freedesktop.DBus.Error.InvalidArgs"));
    EXPECT_NE(askMenu("AboutToShow", {unknownId}).errorName(), QString());
}

TEST_F(StatusItemMenuTest, EventGroup_ReturnsUnknownItemsAndFailsIfAllAre) {
    const QDBusMessage some =
        askMenu("EventGroup", {events({event(unknownId, "clicked"), event(2, "clicked")})});
    EXPECT_THAT(numbersIn(some, 0), ElementsAre(unknownId));
    EXPECT_TRUE(waitUntil([this] { return clicks_.size() == 1; }));
    EXPECT_NE(askMenu("EventGroup", {events({event(unknownId, "clicked")})}).errorName(),
              QString());
    EXPECT_EQ(askMenu("EventGroup", {events({})}).errorName(), QString());
}

TEST_F(StatusItemMenuTest, AboutToShowGroup_ReturnsUnknownItemsAndFailsIfAllAre) {
    const QDBusMessage some = askMenu("AboutToShowGroup", {numbers({unknownId, 5})});
    EXPECT_THAT(numbersIn(some, 0), IsEmpty());
    EXPECT_THAT(numbersIn(some, 1), ElementsAre(unknownId));
    EXPECT_NE(askMenu("AboutToShowGroup", {numbers({unknownId, -1})}).errorName(), QString());
}

TEST_F(StatusItemMenuTest, FloodOfEvents_IsSurvivedAndTheLastClickCounts) {
    QDBusMessage click =
        QDBusMessage::createMethodCall(program_.baseService(), QLatin1String(menuPath),
                                       dbusMenuInterface, QStringLiteral("Event"));
    constexpr int flood = 10000;
    for (int index = 0; index < flood; ++index) {
        click.setArguments({index % 12, QStringLiteral("clicked"),
                            QVariant::fromValue(QDBusVariant(index)), static_cast<uint>(index)});
        host_.send(click);
    }
    settle();
    EXPECT_TRUE(waitUntil([this] { return clicks_.size() >= 4; }));
    EXPECT_LE(clicks_.size(), flood);
    clicks_.clear();
    sendEvent(8, "clicked");
    EXPECT_TRUE(waitUntil([this] { return clicks_ == QStringList(QStringLiteral("quit")); }));
}

} // namespace quorvane::test
