#include "widgets/BlurredWindow.h"

#include "tests/support/QtPrinters.h"
#include "widgets/EffectView.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>

namespace quorvane {

namespace {

using Background = BlurredWindow::Background;

QPalette darkTheme() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(42, 46, 50));
    palette.setColor(QPalette::WindowText, QColor(252, 252, 252));
    return palette;
}

QPalette lightTheme() {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(239, 240, 241));
    palette.setColor(QPalette::WindowText, QColor(35, 38, 41));
    return palette;
}

/// WCAG's relative luminance.
double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

/// What is painted on transparent ground.
QImage painted(QWidget& window) {
    window.resize(200, 100);
    QImage image(window.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    window.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

} // namespace

TEST(BlurredWindowTest, WithoutTheEffect_IsNinetyFivePercentOpaqueWhiteOverABlurOfTwenty) {
    BlurredWindow window(nullptr, Background::translucent);
    window.setPalette(lightTheme());
    window.awakeFromLayout();

    EXPECT_TRUE(window.testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_EQ(window.property("blurRadius").toInt(), 20);
    const QColor colour = painted(window).pixelColor(50, 50);
    EXPECT_NEAR(colour.alphaF(), 0.95, 0.003);
    EXPECT_EQ(QColor(colour.rgb()), QColor(Qt::white));
}

TEST(BlurredWindowTest, OnADisplayWithoutBlur_TheEffectIsNotChosen) {
    BlurredWindow window;
    window.awakeFromLayout();
    EXPECT_EQ(window.findChild<EffectView*>(), nullptr);
    EXPECT_EQ(window.blurRadius(), 20);
}

TEST(BlurredWindowTest, BeforeItIsAwake_NoBlurWasAskedFor) {
    const BlurredWindow window;
    EXPECT_EQ(window.blurRadius(), 0);
}

TEST(BlurredWindowTest, WithTheEffect_TheEffectViewLiesBelowTheFirstChild) {
    BlurredWindow window(nullptr, Background::effect);
    window.resize(300, 200);
    const auto* first = new QLabel(QStringLiteral("content"), &window);
    window.awakeFromLayout();

    const auto* effect = window.findChild<EffectView*>();
    ASSERT_NE(effect, nullptr);
    EXPECT_LT(window.children().indexOf(effect), window.children().indexOf(first));
    EXPECT_EQ(effect->geometry(), QRect(0, 0, 300, 200));
    EXPECT_EQ(EffectView::material(), EffectView::Material::light);
    EXPECT_EQ(window.blurRadius(), 0);
}

TEST(BlurredWindowTest, WithTheEffect_TheContentTakesTheTitleBarsPlace) {
    BlurredWindow window(nullptr, Background::effect);
    window.awakeFromLayout();
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST(BlurredWindowTest, WithTheEffect_TheEffectViewGrowsWithTheWindow) {
    BlurredWindow window(nullptr, Background::effect);
    window.awakeFromLayout();
    window.show();
    window.resize(640, 480);
    QTest::qWait(0);
    EXPECT_EQ(window.findChild<EffectView*>()->size(), QSize(640, 480));
}

TEST(BlurredWindowTest, InEveryTheme_TextsAreLegibleOnIt) {
    for (const QPalette& theme : {lightTheme(), darkTheme()}) {
        BlurredWindow window(nullptr, Background::translucent);
        window.setPalette(theme);
        window.awakeFromLayout();
        EXPECT_GE(contrast(window.backgroundColor(), theme.color(QPalette::WindowText)), 4.5);
    }
}

TEST(BlurredWindowTest, Escape_ClosesIt) {
    BlurredWindow window;
    window.awakeFromLayout();
    window.show();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST(BlurredWindowTest, Return_PressesTheDefaultButtonOnly) {
    BlurredWindow window;
    int ordinary = 0;
    int usual = 0;
    QObject::connect(new QPushButton(&window), &QPushButton::clicked, [&] { ++ordinary; });
    auto* button = new QPushButton(&window);
    button->setDefault(true);
    QObject::connect(button, &QPushButton::clicked, [&] { ++usual; });
    window.show();

    QTest::keyClick(&window, Qt::Key_Return);
    QTest::keyClick(&window, Qt::Key_Enter);
    EXPECT_EQ(ordinary, 0);
    EXPECT_EQ(usual, 2);
}

} // namespace quorvane
