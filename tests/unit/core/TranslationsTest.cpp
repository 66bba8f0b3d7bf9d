#include "core/Localized.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/SourceFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <gtest/gtest.h>

namespace quorvane::test {

namespace {

const QDir root(QStringLiteral(QUORVANE_SOURCE_DIR));

QString unescaped(QString text) {
    return text.replace(QStringLiteral("\\\""), QStringLiteral("\""));
}

/// The keys in the calls of `localized` in this source, with adjacent literals put together.
void addKeys(const QString& source, QSet<QString>& keys) {
    static const QRegularExpression call(
        QStringLiteral(R"x(localized\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+))x"));
    static const QRegularExpression literal(QStringLiteral(R"x("((?:[^"\\]|\\.)*)")x"));
    for (const auto& found : call.globalMatch(source)) {
        QString key;
        for (const auto& part : literal.globalMatch(found.captured(1))) {
            key += unescaped(part.captured(1));
        }
        keys.insert(key);
    }
}

/// Every text of every window layout.
void addLayoutTexts(const QString& layout, QSet<QString>& keys) {
    static const QRegularExpression text(
        QStringLiteral(R"(<string(?![^>]*notr="true")[^>]*>([^<]+)</string>)"));
    for (const auto& found : text.globalMatch(layout)) {
        QString key = found.captured(1);
        for (const auto& [entity, character] :
             {std::pair("&lt;", "<"), {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}}) {
            key.replace(QLatin1String(entity), QLatin1String(character));
        }
        keys.insert(key);
    }
}

QSet<QString> allKeys() {
    QSet<QString> keys;
    for (const QString& folder : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (folder == QLatin1String("build") || folder == QLatin1String("tests")) {
            continue;
        }
        QDirIterator files(root.filePath(folder), {QStringLiteral("*.cpp")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            addKeys(QString::fromUtf8(sourceFile(root.relativeFilePath(files.next()))), keys);
        }
    }
    for (const QString& name : QDir(root.filePath(QStringLiteral("resources")))
                                   .entryList({QStringLiteral("*.ui")}, QDir::Files)) {
        addLayoutTexts(QString::fromUtf8(sourceFile(QStringLiteral("resources/") + name)), keys);
    }
    return keys;
}

QStringList directives(const QString& text) {
    static const QRegularExpression directive(QStringLiteral("%[d@%]"));
    QStringList found;
    for (const auto& each : directive.globalMatch(text)) {
        found.append(each.captured());
    }
    return found;
}

class TranslationsTest : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        ASSERT_TRUE(translator_.load(QStringLiteral("quorvane_") + QLatin1String(GetParam()),
                                     QStringLiteral(QUORVANE_TRANSLATIONS)));
        QCoreApplication::installTranslator(&translator_);
    }

    void TearDown() override { QCoreApplication::removeTranslator(&translator_); }

    [[nodiscard]] QString translated(const QString& key, int number = -1) const {
        return translator_.translate("Quorvane", key.toUtf8().constData(), nullptr, number);
    }

  private:
    QTranslator translator_;
};

} // namespace

TEST_P(TranslationsTest, EveryTextOfTheProgram_IsTranslatedWithTheSameDirectives) {
    const QSet<QString> keys = allKeys();
    EXPECT_GT(keys.size(), 30);
    for (const QString& key : keys) {
        const QString text = translated(key);
        EXPECT_FALSE(text.isEmpty()) << key.toStdString();
        EXPECT_EQ(directives(text), directives(key)) << key.toStdString();
    }
}

TEST_P(TranslationsTest, OneMinuteAndSeveral_HaveTheirOwnForms) {
    const QString one = localized("You saved %d minutes of battery!", 1);
    const QString several = localized("You saved %d minutes of battery!", 5);
    EXPECT_NE(one, several);
    EXPECT_TRUE(filledIn(several, 5).contains(QLatin1Char('5')));
    EXPECT_FALSE(several.startsWith(QStringLiteral("You")));
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslationsTest, testing::Values("de", "fr"),
                         [](const auto& language) { return std::string(language.param); });

TEST(LocalizedTextTest, WithoutTranslation_TheKeyIsTheText) {
    EXPECT_EQ(localized("Not Now"), QStringLiteral("Not Now"));
    EXPECT_EQ(localized("You saved %d minutes of battery!", 2),
              QStringLiteral("You saved %d minutes of battery!"));
}

TEST(LocalizedTextTest, TextsFilledIn_InOrderAndOnlyOnce) {
    EXPECT_EQ(filledIn(QStringLiteral("%@ (r%@)"), {QStringLiteral("%@"), QStringLiteral("7")}),
              QStringLiteral("%@ (r7)"));
    EXPECT_EQ(filledIn(QStringLiteral("%@"), QStringList{}), QStringLiteral("%@"));
    EXPECT_EQ(filledIn(QStringLiteral("none"), {QStringLiteral("x")}), QStringLiteral("none"));
}

} // namespace quorvane::test
