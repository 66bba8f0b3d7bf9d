#include "core/ObservableObject.h"

#include <gmock/gmock.h>

#include <memory>
#include <vector>

namespace quorvane::test {

using testing::ElementsAre;
using testing::IsEmpty;

/// An object that counts how often its properties are read.
class Meter : public ObservableObject {
    Q_OBJECT
    Q_PROPERTY(int level READ level WRITE setLevel)
    Q_PROPERTY(QList<int> levels READ levels)

  public:
    [[nodiscard]] int level() const {
        ++levelReads;
        return level_;
    }

    [[nodiscard]] QList<int> levels() const {
        ++listReads;
        return levels_;
    }

    void setLevel(int level) { setObserved(level_, level, QStringLiteral("level")); }

    /// A change that is bracketed by hand.
    void append(int level) {
        willChangeValueForKey(QStringLiteral("levels"));
        levels_.append(level);
        didChangeValueForKey(QStringLiteral("levels"));
    }

    [[nodiscard]] const int* listsPlace() const { return levels_.constData(); }

    void reserve(int size) { levels_.reserve(size); }

    mutable int levelReads = 0;
    mutable int listReads = 0;

  private:
    int level_ = 0;
    QList<int> levels_;
};

namespace {

const QString levelKey = QStringLiteral("level");
const QString levelsKey = QStringLiteral("levels");

class ObservableObjectTest : public testing::Test {
  protected:
    void observe(const QString& key) { observe(key, &meter); }

    void observe(const QString& key, const QObject* context) {
        meter.observe(key, context, [this](const ObservableObject::Change& change) {
            changes.push_back(change);
        });
    }

    Meter meter;
    std::vector<ObservableObject::Change> changes;
};

} // namespace

TEST_F(ObservableObjectTest, PropertyThatNobodyObserves_IsNotReadWhenItIsSet) {
    meter.setLevel(1);
    meter.append(1);
    EXPECT_EQ(meter.levelReads, 0);
    EXPECT_EQ(meter.listReads, 0);
}

TEST_F(ObservableObjectTest, ObserverOfAnotherProperty_CostsThisOneNothing) {
    observe(levelKey);
    meter.append(1);
    EXPECT_EQ(meter.listReads, 0);
    EXPECT_THAT(changes, IsEmpty());
}

TEST_F(ObservableObjectTest, ListThatNobodyObserves_IsNeverCopied) {
    constexpr int samples = 1000;
    observe(levelKey);
    meter.reserve(samples);
    const int* const place = meter.listsPlace();
    for (int i = 0; i < samples; ++i) {
        meter.append(i);
        ASSERT_EQ(meter.listsPlace(), place) << i;
    }
}

TEST_F(ObservableObjectTest, ManyObservers_HaveTheValueReadOnceBeforeAndOnceAfter) {
    observe(levelKey);
    observe(levelKey);
    meter.setLevel(1);
    EXPECT_EQ(meter.levelReads, 2);
    EXPECT_EQ(changes.size(), 2U);
}

TEST_F(ObservableObjectTest, EverySet_IsAnnouncedWithOldAndNewValueAlsoOneToTheSame) {
    observe(levelKey);
    meter.setLevel(1);
    meter.setLevel(1);
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[0].key, levelKey);
    EXPECT_EQ(changes[0].oldValue, QVariant(0));
    EXPECT_EQ(changes[0].newValue, QVariant(1));
    EXPECT_EQ(changes[1].oldValue, QVariant(1));
    EXPECT_EQ(changes[1].newValue, QVariant(1));
}

TEST_F(ObservableObjectTest, SetByName_IsAnnouncedToo) {
    observe(levelKey);
    EXPECT_TRUE(meter.setValueForKey(3, levelKey));
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[0].newValue, QVariant(3));
    EXPECT_FALSE(meter.setValueForKey(3, QStringLiteral("depth")));
}

TEST_F(ObservableObjectTest, ObservedList_HasItsOldValueAfterTheChange) {
    observe(levelsKey);
    meter.append(1);
    meter.append(2);
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[1].oldValue.value<QList<int>>(), QList<int>{1});
    EXPECT_EQ(changes[1].newValue.value<QList<int>>(), (QList<int>{1, 2}));
}

TEST_F(ObservableObjectTest, ObserverThatIsGone_HearsNothingAndCostsNothing) {
    auto context = std::make_unique<QObject>();
    observe(levelKey, context.get());
    meter.setLevel(1);
    meter.levelReads = 0;
    context.reset();
    meter.setLevel(2);
    EXPECT_EQ(changes.size(), 1U);
    EXPECT_EQ(meter.levelReads, 0);
}

TEST_F(ObservableObjectTest, ObserverThatWasDisconnected_LeavesTheOthersTheirs) {
    const auto first = meter.observe(levelKey, &meter, [](const auto& /*change*/) {});
    observe(levelKey);
    QObject::disconnect(first);
    meter.setLevel(1);
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[0].oldValue, QVariant(0));
}

TEST_F(ObservableObjectTest, Observers_RunInTheOrderInWhichTheyCame) {
    std::vector<int> order;
    for (int i = 0; i < 3; ++i) {
        meter.observe(levelKey, &meter,
                      [&order, i](const auto& /*change*/) { order.push_back(i); });
    }
    meter.setLevel(1);
    EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST_F(ObservableObjectTest, ObserverThatSetsThePropertyAgain_IsToldOfBothInTurn) {
    meter.observe(levelKey, &meter, [this](const ObservableObject::Change& change) {
        if (change.newValue.toInt() == 1) {
            meter.setLevel(2);
        }
        changes.push_back(change);
    });
    meter.setLevel(1);
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[0].oldValue, QVariant(1));
    EXPECT_EQ(changes[0].newValue, QVariant(2));
    EXPECT_EQ(changes[1].oldValue, QVariant(0));
    EXPECT_EQ(changes[1].newValue, QVariant(1));
}

} // namespace quorvane::test

#include "ObservableObjectTest.moc"
