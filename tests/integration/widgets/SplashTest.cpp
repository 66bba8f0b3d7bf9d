#include "tests/integration/widgets/PrefixTranslator.h"
#include "tests/support/QtPrinters.h"
#include "widgets/BlurredWindow.h"
#include "widgets/FeatureGlyph.h"
#include "widgets/LayoutLoader.h"
#include "widgets/SplashWindowController.h"

#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

class SplashTest : public testing::Test {
  protected:
    SplashTest() { load(); }

    void load() {
        LayoutLoader::Result result =
            LayoutLoader::load(QStringLiteral(QUORVANE_RESOURCES "/Splash.ui"));
        EXPECT_EQ(result.error, QString());
        splash_ = std::move(result.window);
    }

    void SetUp() override { ASSERT_NE(splash_, nullptr); }

    void show() {
        splash_->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(splash_.get()));
    }

    bool scrolls() {
        return splash_->findChild<QScrollArea*>()->verticalScrollBar()->maximum() > 0;
    }

    QPushButton* button() { return splash_->findChild<QPushButton*>(); }

    std::unique_ptr<QWidget> splash_;
};

/// Texts that do not fit into their labels.
QStringList cutTexts(const QWidget& window) {
    QStringList cut;
    const auto labels = window.findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        const int needed =
            label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
        if (label->height() < needed || label->width() < label->minimumSizeHint().width()) {
            cut += label->text();
        }
    }
    return cut;
}

} // namespace

TEST_F(SplashTest, ItIsABlurredWindowWithItsController) {
    EXPECT_NE(qobject_cast<BlurredWindow*>(splash_.get()), nullptr);
    EXPECT_NE(splash_->findChild<SplashWindowController*>(), nullptr);
    EXPECT_EQ(splash_->property("blurRadius").toInt(), 20);
}

TEST_F(SplashTest, ItsButton_ClosesIt) {
    show();
    QTest::mouseClick(button(), Qt::LeftButton);
    EXPECT_FALSE(splash_->isVisible());
}

TEST_F(SplashTest, Escape_ClosesIt) {
    show();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(splash_->isVisible());
}

TEST_F(SplashTest, Return_ClosesIt) {
    show();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(splash_->isVisible());
}

TEST_F(SplashTest, Tab_StaysOnTheButton) {
    show();
    ASSERT_TRUE(button()->hasFocus());
    QTest::keyClick(button(), Qt::Key_Tab);
    EXPECT_TRUE(button()->hasFocus());
    QTest::keyClick(button(), Qt::Key_Space);
    EXPECT_FALSE(splash_->isVisible());
}

TEST_F(SplashTest, WhatTakesTheKeyboard_HasANameForScreenReaders) {
    EXPECT_FALSE(splash_->accessibleName().isEmpty());
    EXPECT_FALSE(splash_->accessibleDescription().isEmpty());
    EXPECT_FALSE(button()->accessibleName().isEmpty());
    EXPECT_FALSE(button()->accessibleDescription().isEmpty());
    const auto widgets = splash_->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (widget->focusPolicy() != Qt::NoFocus && widget->focusProxy() == nullptr) {
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
        }
    }
}

TEST_F(SplashTest, EverySentence_HasADrawingOfItsOwn) {
    QList<int> glyphs;
    const auto widgets = splash_->findChildren<FeatureGlyph*>();
    for (const FeatureGlyph* widget : widgets) {
        glyphs += widget->glyph();
    }
    std::sort(glyphs.begin(), glyphs.end());
    EXPECT_GT(glyphs.size(), 5);
    EXPECT_EQ(std::adjacent_find(glyphs.begin(), glyphs.end()), glyphs.end());
}

TEST_F(SplashTest, NoTextIsCut) {
    show();
    EXPECT_EQ(cutTexts(*splash_), QStringList());
    EXPECT_FALSE(scrolls());
}

TEST_F(SplashTest, TextsOfAnotherLanguageThatAreLonger_AreNotCut) {
    const test::PrefixTranslator translator(QString(), 0.4);
    load();
    show();
    EXPECT_EQ(button()->text(), QStringLiteral("Get StartedGet "));
    EXPECT_EQ(cutTexts(*splash_), QStringList());
    EXPECT_FALSE(scrolls());
    EXPECT_GE(button()->width(), button()->sizeHint().width());
}

TEST_F(SplashTest, OnASmallScreen_TheContentScrollsAndTheButtonStays) {
    show();
    splash_->resize(splash_->width(), 300);
    QTest::qWait(0);
    const auto* area = splash_->findChild<QScrollArea*>();
    EXPECT_TRUE(scrolls());
    EXPECT_TRUE(splash_->rect().contains(button()->geometry()));
    EXPECT_EQ(area->focusPolicy(), Qt::StrongFocus);
}

} // namespace quorvane
