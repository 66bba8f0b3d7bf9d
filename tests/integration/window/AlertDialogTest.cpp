#include "apps/window/AlertDialog.h"

#include "tests/support/QtPrinters.h"

#include <QLabel>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

Alert question() {
    return {QStringLiteral("Move?"),
            QStringLiteral("It can be moved."),
            {QStringLiteral("Move"), QStringLiteral("Do Not Move"), QStringLiteral("Later")},
            1};
}

class AlertDialogTest : public testing::Test {
  protected:
    void show(const Alert& alert) {
        dialog_ = std::make_unique<AlertDialog>(alert);
        dialog_->open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog_.get()));
    }

    QPushButton* button(const QString& text) {
        const auto buttons = dialog_->findChildren<QPushButton*>();
        for (QPushButton* button : buttons) {
            if (button->accessibleName() == text) {
                return button;
            }
        }
        return nullptr;
    }

    std::unique_ptr<AlertDialog> dialog_;
};

} // namespace

TEST_F(AlertDialogTest, PressedButton_IsTheResult) {
    int index = 0;
    for (const QString& text : question().buttons) {
        show(question());
        QTest::mouseClick(button(text), Qt::LeftButton);
        EXPECT_FALSE(dialog_->isVisible());
        EXPECT_EQ(dialog_->result(), index++);
    }
}

TEST_F(AlertDialogTest, Return_PressesTheFirstButton) {
    Alert alert = question();
    alert.safeButton = 2;
    show(alert);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(dialog_->result(), 0);
    EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(AlertDialogTest, Escape_IsTheSafeButton) {
    show(question());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(dialog_->result(), 1);
}

TEST_F(AlertDialogTest, Closing_IsTheSafeButton) {
    show(question());
    dialog_->close();
    EXPECT_FALSE(dialog_->isVisible());
    EXPECT_EQ(dialog_->result(), 1);
}

TEST_F(AlertDialogTest, Tab_ReachesEveryButton) {
    show(question());
    QStringList reached;
    for (qsizetype i = 0; i < question().buttons.size(); ++i) {
        reached += QApplication::focusWidget()->accessibleName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(reached, question().buttons);
}

TEST_F(AlertDialogTest, ItBlocksTheProgramsOtherWindows) {
    show(question());
    EXPECT_TRUE(dialog_->isModal());
}

TEST_F(AlertDialogTest, Markup_IsShownLetterByLetter) {
    Alert alert = question();
    alert.messageText = QStringLiteral("<h1>Big</h1>");
    alert.informativeText = QStringLiteral("<img src='file:///etc/passwd'> <a href='x'>y</a>");
    alert.buttons = {QStringLiteral("Save & <b>Quit</b>"), QStringLiteral("No")};
    show(alert);
    const auto labels = dialog_->findChildren<QLabel*>();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(labels.at(0)->text(), alert.messageText);
    EXPECT_EQ(labels.at(1)->text(), alert.informativeText);
    for (const QLabel* label : labels) {
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    }
    EXPECT_EQ(button(alert.buttons.at(0))->text(), QStringLiteral("Save && <b>Quit</b>"));
}

TEST_F(AlertDialogTest, WithoutInformation_ThereIsOneTextOnly) {
    Alert alert = question();
    alert.informativeText.clear();
    show(alert);
    EXPECT_EQ(dialog_->findChildren<QLabel*>().size(), 1);
}

TEST_F(AlertDialogTest, VeryLongTexts_DoNotPushTheButtonsOffTheScreen) {
    Alert alert = question();
    alert.informativeText = QStringLiteral("A sentence that goes on and on. ").repeated(2000);
    alert.buttons[2] = QStringLiteral("A button that says a lot about what it does ").repeated(2);
    show(alert);
    EXPECT_LE(dialog_->height(), dialog_->screen()->availableSize().height());
    EXPECT_LE(dialog_->width(), dialog_->screen()->availableSize().width());
    for (const QString& text : alert.buttons) {
        EXPECT_TRUE(dialog_->rect().contains(button(text)->geometry())) << text.toStdString();
    }
}

TEST_F(AlertDialogTest, ScreenReaders_HearTheMessage) {
    show(question());
    EXPECT_EQ(dialog_->accessibleName(), question().messageText);
    EXPECT_EQ(dialog_->accessibleDescription(), question().informativeText);
}

} // namespace quorvane
