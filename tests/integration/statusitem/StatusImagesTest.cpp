#include "tests/support/QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <gmock/gmock.h>

namespace quorvane {

namespace {

QDir folder() {
    return {QStringLiteral(QUORVANE_RESOURCES "/StatusImages")};
}

QStringList images() {
    return folder().entryList({QStringLiteral("*.svg")}, QDir::Files, QDir::Name);
}

QString content(const QString& image) {
    QFile file(folder().filePath(image));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

TEST(StatusImagesTest, ThereAreTheTwentyTwoThatTheStatusItemNames) {
    QStringList expected = {
        QStringLiteral("icon-infinity-on.svg"), QStringLiteral("icon-infinity-off.svg"),
        QStringLiteral("battery-charged.svg"), QStringLiteral("battery-charging.svg")};
    for (const int step : {100, 90, 80, 60, 50, 40, 30, 20, 10}) {
        expected += QStringLiteral("battery-on-%1.svg").arg(step);
        expected += QStringLiteral("battery-off-%1.svg").arg(step);
    }
    EXPECT_EQ(expected.size(), 22);
    EXPECT_THAT(images(), testing::UnorderedElementsAreArray(expected));
}

TEST(StatusImagesTest, NoTwoAreTheSame) {
    QSet<QString> seen;
    for (const QString& image : images()) {
        EXPECT_FALSE(seen.contains(content(image))) << image.toStdString();
        seen += content(image);
    }
}

TEST(StatusImagesTest, EachIsOneFilledShapeOnTheGridThatHostsCanRecolour) {
    static const QRegularExpression refused(
        QStringLiteral("stroke|mask|clip|opacity|gradient|<image|<text|href"));
    static const QRegularExpression colour(QStringLiteral("#[0-9a-fA-F]{3,8}\\b"));
    for (const QString& image : images()) {
        const QString text = content(image);
        EXPECT_TRUE(text.contains(QStringLiteral("viewBox=\"0 0 16 16\""))) << image.toStdString();
        EXPECT_TRUE(text.contains(QStringLiteral("id=\"current-color-scheme\"")));
        EXPECT_TRUE(text.contains(QStringLiteral("class=\"ColorScheme-Text\"")));
        EXPECT_TRUE(text.contains(QStringLiteral("fill:currentColor")));
        EXPECT_FALSE(refused.match(text).hasMatch()) << image.toStdString();
        auto colours = colour.globalMatch(text);
        while (colours.hasNext()) {
            EXPECT_EQ(colours.next().captured(), QStringLiteral("#868686"));
        }
    }
}

} // namespace quorvane
