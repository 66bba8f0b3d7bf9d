#include "tests/support/QtPrinters.h"

#include <QFile>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace quorvane::test {

namespace {

const QString root = QStringLiteral(QUORVANE_SOURCE_DIR "/");

QString contents(const QString& path) {
    QFile file(root + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// One row of a table of the page: the name that is kept, and the file that has it.
struct Kept {
    QString name;
    QString file;
};

QList<Kept> keptNames() {
    static const QRegularExpression row(QStringLiteral(R"(^\| `([^`]+)` \| ([a-z]+/[^ |]+) \|)"),
                                        QRegularExpression::MultilineOption);
    QList<Kept> found;
    for (const auto& each : row.globalMatch(contents(QStringLiteral("docs/compatibility.md")))) {
        found.append({each.captured(1), each.captured(2)});
    }
    return found;
}

} // namespace

TEST(CompatibilityTest, EveryNameOfThePage_IsStillInItsFile) {
    const QList<Kept> names = keptNames();
    EXPECT_GT(names.size(), 40);
    for (const Kept& each : names) {
        EXPECT_TRUE(contents(each.file).contains(each.name))
            << each.name.toStdString() << " in " << each.file.toStdString();
    }
}

} // namespace quorvane::test
