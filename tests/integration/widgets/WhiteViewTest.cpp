#include "widgets/WhiteView.h"

#include <QImage>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

/// What the view paints when only `dirty` has to be painted, on transparent ground.
QImage painted(WhiteView& view, const QRect& dirty) {
    view.resize(20, 20);
    QImage image(20, 20, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    view.render(&image, dirty.topLeft(), dirty, {});
    return image;
}

} // namespace

TEST(WhiteViewTest, Paint_FillsWhatIsDirtyWithOpaqueWhiteAndNothingElse) {
    WhiteView view;
    const QRect dirty(5, 5, 8, 8);
    const QImage image = painted(view, dirty);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor expected = dirty.contains(x, y) ? Qt::white : Qt::transparent;
            ASSERT_EQ(image.pixelColor(x, y), expected) << x << ", " << y;
        }
    }
}

TEST(WhiteViewTest, InADarkTheme_ItIsWhiteAllTheSame) {
    WhiteView view;
    view.setPalette(QPalette(Qt::black));
    EXPECT_EQ(painted(view, QRect(0, 0, 20, 20)).pixelColor(10, 10), QColor(Qt::white));
}

TEST(WhiteViewTest, WhatTheSuperclassPaints_LiesOnTheWhite) {
    WhiteView view;
    view.setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
    const QImage image = painted(view, QRect(0, 0, 20, 20));
    EXPECT_EQ(image.pixelColor(0, 0), view.palette().color(QPalette::WindowText));
    EXPECT_EQ(image.pixelColor(10, 10), QColor(Qt::white));
}

} // namespace quorvane
