#include "tests/support/QtPrinters.h"
#include "widgets/CollectEmailWindow.h"
#include "widgets/LayoutWindowController.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace quorvane {

namespace {

QString layoutFile() {
    return QStringLiteral(QUORVANE_RESOURCES "/CollectEmailWindow.ui");
}

} // namespace

TEST(EmailWindowTest, TheController_LoadsItsWindowOnce) {
    LayoutWindowController controller(layoutFile());
    QWidget* window = controller.window();
    EXPECT_NE(qobject_cast<CollectEmailWindow*>(window), nullptr);
    EXPECT_EQ(controller.window(), window);
    EXPECT_EQ(controller.error(), QString());
}

TEST(EmailWindowTest, WithoutALayout_TheControllerSaysWhy) {
    LayoutWindowController controller(QStringLiteral("/nowhere/Layout.ui"));
    EXPECT_EQ(controller.window(), nullptr);
    EXPECT_TRUE(controller.error().startsWith(QStringLiteral("/nowhere/Layout.ui: ")));
}

TEST(EmailWindowTest, WhatTakesTheKeyboard_HasANameForScreenReaders) {
    LayoutWindowController controller(layoutFile());
    ASSERT_NE(controller.window(), nullptr);
    int found = 0;
    const auto widgets = controller.window()->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (widget->focusPolicy() != Qt::NoFocus) {
            ++found;
            EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
        }
    }
    EXPECT_EQ(found, 3);
}

TEST(EmailWindowTest, Cancel_ClosesIt) {
    LayoutWindowController controller(layoutFile());
    ASSERT_NE(controller.window(), nullptr);
    controller.window()->show();
    QTest::mouseClick(controller.window()->findChild<QPushButton*>(QStringLiteral("cancel")),
                      Qt::LeftButton);
    EXPECT_FALSE(controller.window()->isVisible());
}

} // namespace quorvane
