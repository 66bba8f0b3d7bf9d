#include "widgets/DummyControl.h"

#include "tests/support/QtPrinters.h"

#include <QMouseEvent>
#include <QTest>
#include <gmock/gmock.h>

namespace quorvane {

namespace {

using testing::ElementsAre;

class View : public QWidget {
  public:
    explicit View(QStringList& heard) : heard_(heard) { resize(100, 100); }

    [[nodiscard]] QPoint where() const { return where_; }

  protected:
    void mousePressEvent(QMouseEvent* event) override {
        heard_ += QStringLiteral("view");
        where_ = event->position().toPoint();
    }

  private:
    QStringList& heard_;
    QPoint where_;
};

class DummyControlTest : public testing::Test {
  protected:
    DummyControlTest() : view_(heard_), control_(new DummyControl(&view_)) {
        control_->setGeometry(20, 30, 50, 50);
        QObject::connect(control_, &DummyControl::triggered,
                         [this] { heard_ += QStringLiteral("action"); });
        view_.show();
    }

    QStringList heard_;
    View view_;
    DummyControl* control_;
};

} // namespace

TEST_F(DummyControlTest, Click_ReachesTheViewBeneathAndThenFiresTheAction) {
    QTest::mouseClick(control_, Qt::LeftButton);
    EXPECT_THAT(heard_, ElementsAre(QStringLiteral("view"), QStringLiteral("action")));
}

TEST_F(DummyControlTest, Click_ReachesTheViewWhereItWasMade) {
    QTest::mouseClick(control_, Qt::LeftButton, {}, QPoint(5, 6));
    EXPECT_EQ(view_.where(), QPoint(25, 36));
}

TEST_F(DummyControlTest, OtherButtons_ReachTheViewOnly) {
    QTest::mouseClick(control_, Qt::RightButton);
    EXPECT_THAT(heard_, ElementsAre(QStringLiteral("view")));
}

TEST_F(DummyControlTest, ClickWithoutAViewBeneath_FiresTheAction) {
    control_->setParent(nullptr);
    const std::unique_ptr<DummyControl> owner(control_);
    control_->show();
    QTest::mouseClick(control_, Qt::LeftButton);
    EXPECT_THAT(heard_, ElementsAre(QStringLiteral("action")));
}

TEST_F(DummyControlTest, ItIsTransparent) {
    view_.setAutoFillBackground(true);
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::magenta);
    view_.setPalette(palette);
    EXPECT_EQ(view_.grab().toImage().pixelColor(40, 50), QColor(Qt::magenta));
}

} // namespace quorvane
