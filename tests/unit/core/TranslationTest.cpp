#include "core/Translation.h"

#include "core/Localized.h"
#include "tests/support/QtPrinters.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quorvane::test {

namespace {

const QStringList bundled{QStringLiteral("de"), QStringLiteral("fr"), QStringLiteral("pt_BR")};

struct Preference {
    const char* name;
    const char* languages; ///< the preferred one first, with colons between them
    const char* choice;
};

void PrintTo(const Preference& preference, std::ostream* stream) {
    *stream << preference.languages;
}

class TranslationChoiceTest : public testing::TestWithParam<Preference> {};

} // namespace

TEST_P(TranslationChoiceTest, FirstLanguageThatThereIs) {
    const QStringList languages = QString::fromLatin1(GetParam().languages).split(u':');
    EXPECT_EQ(Translation::choice(languages, bundled), QLatin1String(GetParam().choice));
}

INSTANTIATE_TEST_SUITE_P(
    Languages, TranslationChoiceTest,
    testing::Values(Preference{"None", "", ""}, Preference{"German", "de", "de"},
                    Preference{"EnglishBeforeFrench", "en:en-Latn-US:en-US:fr", ""},
                    Preference{"BritishBeforeFrench", "en-GB:fr", ""},
                    Preference{"FrenchBeforeEnglish", "fr:fr-FR:en", "fr"},
                    Preference{"GermanBeforeEnglish", "de:en", "de"},
                    Preference{"UnknownBeforeGerman", "ja:ja-Jpan-JP:de:en", "de"},
                    Preference{"UnknownBeforeEnglishBeforeGerman", "ja:en:de", ""},
                    Preference{"Region", "de-AT:de-Latn-AT:fr", "de"},
                    Preference{"RegionWithUnderscore", "de_CH", "de"},
                    Preference{"RegionOfItsOwn", "pt-BR", "pt_BR"},
                    Preference{"OtherRegionThanThere", "pt-PT:fr", "fr"},
                    Preference{"LongerNamesThatBeginAlike", "den:frr:eng:fr", "fr"},
                    Preference{"NotALanguage", "C", ""}, Preference{"EmptyName", ":fr", "fr"}),
    [](const auto& preference) { return preference.param.name; });

TEST(TranslationTest, ChosenLanguage_IsThereAsLongAsTheObject) {
    {
        const Translation translation(QStringLiteral(QUORVANE_TRANSLATIONS),
                                      {QStringLiteral("pt"), QStringLiteral("de-DE")});
        EXPECT_EQ(localized("Not Now"), QStringLiteral("Nicht jetzt"));
    }
    EXPECT_EQ(localized("Not Now"), QStringLiteral("Not Now"));
}

TEST(TranslationTest, EnglishBeforeFrench_TextsStayEnglish) {
    const Translation translation(QStringLiteral(QUORVANE_TRANSLATIONS),
                                  {QStringLiteral("en"), QStringLiteral("fr")});
    EXPECT_EQ(localized("Not Now"), QStringLiteral("Not Now"));
}

TEST(TranslationTest, FolderWithoutTranslations_TextsStayEnglish) {
    const QTemporaryDir empty;
    const Translation translation(empty.path(), {QStringLiteral("de")});
    EXPECT_EQ(localized("Not Now"), QStringLiteral("Not Now"));
}

} // namespace quorvane::test
