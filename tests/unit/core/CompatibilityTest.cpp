#include "tests/support/QtPrinters.h"
#include "tests/support/SourceFile.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

namespace quorvane::test {

namespace {

/// One row of a table of the page: the name that is kept, and the file that has it.
struct Kept {
    QString name;
    QString file;
};

QList<Kept> keptNames() {
    static const QRegularExpression row(QStringLiteral(R"(^\| `([^`]+)` \| ([a-z]+/[^ |]+) \|)"),
                                        QRegularExpression::MultilineOption);
    QList<Kept> found;
    const QString page = QString::fromUtf8(sourceFile(QStringLiteral("docs/compatibility.md")));
    for (const auto& each : row.globalMatch(page)) {
        found.append({each.captured(1), each.captured(2)});
    }
    return found;
}

} // namespace

TEST(CompatibilityTest, EveryNameOfThePage_IsStillInItsFile) {
    const QList<Kept> names = keptNames();
    EXPECT_GT(names.size(), 40);
    for (const Kept& each : names) {
        EXPECT_TRUE(sourceFile(each.file).contains(each.name.toUtf8()))
            << each.name.toStdString() << " in " << each.file.toStdString();
    }
}

} // namespace quorvane::test
