#include "widgets/LayoutLoader.h"

#include "tests/integration/widgets/PrefixTranslator.h"
#include "tests/support/QtPrinters.h"
#include "widgets/DebugMenu.h"
#include "widgets/DummyControl.h"
#include "widgets/SplashWindowController.h"
#include "widgets/WhiteView.h"

#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace quorvane {

namespace {

class LayoutLoaderTest : public testing::Test {
  protected:
    LayoutLoader::Result load(const QByteArray& content) {
        const QString fileName = folder_.filePath(QStringLiteral("Layout.ui"));
        QFile file(fileName);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return LayoutLoader::load(fileName);
    }

    /// The layout of one window with this in it.
    LayoutLoader::Result loadWindow(const QByteArray& content) {
        return load("<ui version=\"4.0\"><widget class=\"QWidget\" name=\"Window\">" + content +
                    "</widget></ui>");
    }

    QTemporaryDir folder_;
};

} // namespace

TEST_F(LayoutLoaderTest, OwnClasses_AreMadeByTheirNames) {
    const auto result = loadWindow("<widget class=\"WhiteView\" name=\"white\"/>"
                                   "<widget class=\"DummyControl\" name=\"dummy\"/>");
    ASSERT_TRUE(result.window) << result.error.toStdString();
    EXPECT_NE(result.window->findChild<WhiteView*>(QStringLiteral("white")), nullptr);
    EXPECT_NE(result.window->findChild<DummyControl*>(QStringLiteral("dummy")), nullptr);
}

TEST_F(LayoutLoaderTest, LayoutObjects_AreMadeWithTheWindow) {
    const auto result = loadWindow("<property name=\"layoutObjects\" stdset=\"0\"><stringlist>"
                                   "<string>DebugMenu</string>"
                                   "<string>SplashWindowController</string>"
                                   "</stringlist></property>");
    ASSERT_TRUE(result.window) << result.error.toStdString();
    EXPECT_NE(result.window->findChild<DebugMenu*>(), nullptr);
    EXPECT_NE(result.window->findChild<SplashWindowController*>(), nullptr);
}

TEST_F(LayoutLoaderTest, UnknownLayoutObject_IsAnErrorThatNamesIt) {
    const auto result = loadWindow("<property name=\"layoutObjects\" stdset=\"0\"><stringlist>"
                                   "<string>Nobody</string></stringlist></property>");
    EXPECT_EQ(result.window, nullptr);
    EXPECT_THAT(result.error.toStdString(),
                testing::AllOf(testing::HasSubstr("Layout.ui"), testing::HasSubstr("Nobody")));
}

TEST_F(LayoutLoaderTest, FaultyLayouts_AreErrorsOfOneLineThatNameTheFile) {
    const QByteArray faulty[] = {
        "",
        "no XML at all",
        "<ui version=\"4.0\">",
        "<ui version=\"4.0\"></ui>",
        "<svg/>",
        "<ui version=\"4.0\"><widget class=\"NoSuchClass\" name=\"Window\"/></ui>",
        QByteArray("\x00\xff\xfe\x01", 4)};
    for (const QByteArray& content : faulty) {
        const auto result = load(content);
        EXPECT_EQ(result.window, nullptr) << content.toStdString();
        EXPECT_THAT(result.error.toStdString(), testing::MatchesRegex(".*/Layout.ui: [^\n]+"))
            << content.toStdString();
    }
}

TEST_F(LayoutLoaderTest, FileThatIsNotThere_IsAnError) {
    const auto result = LayoutLoader::load(QStringLiteral("/nowhere/Layout.ui"));
    EXPECT_EQ(result.window, nullptr);
    EXPECT_THAT(result.error.toStdString(), testing::StartsWith("/nowhere/Layout.ui: "));
}

TEST_F(LayoutLoaderTest, EveryText_IsLookedUpInQuorvanesTranslations) {
    const test::PrefixTranslator translator(QStringLiteral("T:"));
    const auto result =
        loadWindow("<property name=\"windowTitle\"><string>Title</string></property>"
                   "<widget class=\"QLabel\" name=\"label\">"
                   "<property name=\"text\"><string>Text</string></property>"
                   "<property name=\"toolTip\"><string>Tip</string></property></widget>"
                   "<widget class=\"QLineEdit\" name=\"field\">"
                   "<property name=\"placeholderText\"><string>Hint</string></property>"
                   "<property name=\"accessibleName\"><string>Name</string></property>"
                   "<property name=\"accessibleDescription\"><string>What</string></property>"
                   "</widget>");
    ASSERT_TRUE(result.window) << result.error.toStdString();
    const auto* label = result.window->findChild<QLabel*>();
    const auto* field = result.window->findChild<QLineEdit*>();
    EXPECT_EQ(result.window->windowTitle(), QStringLiteral("T:Title"));
    EXPECT_EQ(label->text(), QStringLiteral("T:Text"));
    EXPECT_EQ(label->toolTip(), QStringLiteral("T:Tip"));
    EXPECT_EQ(field->placeholderText(), QStringLiteral("T:Hint"));
    EXPECT_EQ(field->accessibleName(), QStringLiteral("T:Name"));
    EXPECT_EQ(field->accessibleDescription(), QStringLiteral("T:What"));
    EXPECT_EQ(label->objectName(), QStringLiteral("label"));
    EXPECT_EQ(field->text(), QString()) << "there is nothing to look up";
}

TEST_F(LayoutLoaderTest, WithoutATranslation_TheTextsAreTheLayouts) {
    const auto result = loadWindow("<property name=\"windowTitle\"><string>Title</string>"
                                   "</property>");
    ASSERT_TRUE(result.window);
    EXPECT_EQ(result.window->windowTitle(), QStringLiteral("Title"));
}

} // namespace quorvane
