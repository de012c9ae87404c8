#include "desktop/text/LanguageCodes.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

struct Row {
    const char* name;
    const char* text;
    const char* code;
};

class LanguageCodesTest : public testing::TestWithParam<Row> {};

TEST_P(LanguageCodesTest, Text_NamesItsLanguage)
{
    EXPECT_EQ(languageCode(GetParam().text), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, LanguageCodesTest,
    testing::Values(Row{"TwoLetters", "en", "en"}, Row{"CapitalLetters", "EN", "en"}, Row{"ThreeLetters", "eng", "en"},
                    Row{"Bibliographic", "ger", "de"}, Row{"Terminological", "deu", "de"},
                    Row{"BibliographicChinese", "chi", "zh"}, Row{"OnlyThreeLetters", "fil", "fil"},
                    Row{"WithCountry", "pt-BR", "pt"}, Row{"WithCountryBelow", "pt_br", "pt"},
                    Row{"WithScript", "zh-Hans", "zh"}, Row{"WithScriptAndCountry", "zh-Hant-TW", "zh"},
                    Row{"WithRegionNumber", "es-419", "es"}, Row{"EnglishName", "German", "de"},
                    Row{"EnglishNameInLowerCase", "french", "fr"}, Row{"OwnName", "Deutsch", "de"},
                    Row{"OwnNameWithAccents", "FRANÇAIS", "fr"},
                    Row{"OwnNameDecomposed",
                        "franc\xCC\xA7"
                        "ais",
                        "fr"},
                    Row{"OtherScript", "русский", "ru"}, Row{"NoLanguage", "hd", ""}, Row{"NoCode", "xxx", ""},
                    Row{"Nothing", "", ""}, Row{"OneLetter", "e", ""}, Row{"Dash", "-", ""}, Row{"EndsInDash", "en-", ""},
                    Row{"BeginsWithDash", "-en", ""}, Row{"LongPart", "en-abcdefghi", ""}, Row{"Number", "2", ""},
                    Row{"Numbers", "720", ""},
                    Row{"NotUtf8",
                        "fran\xE7"
                        "ais",
                        ""},
                    Row{"Path", "en/../de", ""}, Row{"Keyword", "en@x=y", ""}, Row{"Sentence", "in English", ""}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace desktop
