#include "desktop/playback/SubtitleFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <optional>

namespace desktop {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Row {
    const char* title;
    const char* video;
    const char* name;
    const char* language; ///< null: the file is none of the video's
};

class SubtitleFilesNameTest : public testing::TestWithParam<Row> {};

TEST_P(SubtitleFilesNameTest, Name_BelongsOrNot)
{
    const Row& row = GetParam();
    std::vector<SubtitleFileName> expected;
    if (row.language != nullptr) {
        expected.push_back({row.name, row.language, ""});
    }
    EXPECT_EQ(subtitleFilesOf(row.video, {row.name}), expected);
}

INSTANTIATE_TEST_SUITE_P(
    Names, SubtitleFilesNameTest,
    testing::Values(
        Row{"Srt", "film.mkv", "film.srt", ""}, Row{"Ass", "film.mkv", "film.ass", ""},
        Row{"Ssa", "film.mkv", "film.ssa", ""}, Row{"Vtt", "film.mkv", "film.vtt", ""},
        Row{"Sub", "film.mkv", "film.sub", ""}, Row{"Txt", "film.mkv", "film.txt", ""},
        Row{"OtherExtension", "film.mkv", "film.nfo", nullptr}, Row{"TheVideo", "film.mkv", "film.mkv", nullptr},
        Row{"NoExtension", "film.mkv", "film", nullptr}, Row{"CapitalExtension", "film.mkv", "film.SRT", ""},
        Row{"OtherCase", "Film.mkv", "fILM.srt", ""}, Row{"Decomposed", "caf\xC3\xA9.mkv", "cafe\xCC\x81.srt", ""},
        Row{"NotUtf8", "caf\xE9.mkv", "caf\xE9.en.srt", "en"}, Row{"OtherBytes", "caf\xE9.mkv", "caf\xC3\xA9.srt", nullptr},
        Row{"OtherFilm", "film.mkv", "film2.srt", nullptr}, Row{"ShorterName", "film 2.mkv", "film.srt", nullptr},
        Row{"Part", "film.mkv", "film.2.srt", nullptr}, Row{"PartWithLanguage", "film.mkv", "film.2.en.srt", nullptr},
        Row{"DotsInTheName", "A.Film.2010.1080p.mkv", "A.Film.2010.1080p.en.srt", "en"},
        Row{"DotsOfAnother", "A.Film.mkv", "A.Film.2010.srt", nullptr},
        Row{"LanguageInTheName", "film.en.mkv", "film.en.srt", ""}, Row{"Code", "film.mkv", "film.en.srt", "en"},
        Row{"LongCode", "film.mkv", "film.ENG.srt", "en"}, Row{"Country", "film.mkv", "film.pt-BR.srt", "pt"},
        Row{"EnglishName", "film.mkv", "film.German.srt", "de"},
        Row{"OwnName", "film.mkv",
            "film.Fran\xC3\xA7"
            "ais.srt",
            "fr"},
        Row{"Forced", "film.mkv", "film.eng.forced.srt", "en"}, Row{"OnlyForced", "film.mkv", "film.Forced.srt", ""},
        Row{"ForcedBefore", "film.mkv", "film.forced.eng.srt", "en"},
        Row{"HardOfHearing", "film.mkv", "film.en.hi.srt", "en"}, Row{"OtherWord", "film.mkv", "film.extended.srt", nullptr},
        Row{"WordBehindLanguage", "film.mkv", "film.en.x.srt", nullptr}, Row{"TwoDots", "film.mkv", "film..srt", nullptr},
        Row{"Blank", "film.mkv", "film en.srt", nullptr}, Row{"TxtWithLanguage", "film.mkv", "film.en.txt", nullptr},
        Row{"IdxAlone", "film.mkv", "film.idx", nullptr}, Row{"OnlyExtension", "film.mkv", ".srt", nullptr},
        Row{"Nothing", "film.mkv", "", nullptr}, Row{"VideoWithoutExtension", "film", "film.en.srt", "en"},
        Row{"HiddenVideo", ".film", ".film.srt", ""}),
    [](const auto& row) { return row.param.title; });

std::vector<std::string> namesOf(const std::vector<SubtitleFileName>& files)
{
    std::vector<std::string> names;
    for (const SubtitleFileName& file : files) {
        names.push_back(file.name);
    }
    return names;
}

TEST(SubtitleFiles, Several_ComeInNaturalOrder)
{
    const std::vector<SubtitleFileName> files =
        subtitleFilesOf("film.mkv", {"film.sv.srt", "film.mkv", "film.en.srt", "other.de.srt", "FILM.de.ass"});
    EXPECT_THAT(files, ElementsAre(SubtitleFileName{"FILM.de.ass", "de", ""}, SubtitleFileName{"film.en.srt", "en", ""},
                                   SubtitleFileName{"film.sv.srt", "sv", ""}));
}

TEST(SubtitleFiles, FileWithTheVideosName_ComesFirst)
{
    const std::vector<std::string> names = {"film.de.srt", "Film.srt", "film.ass", "film.default.srt"};
    EXPECT_THAT(namesOf(subtitleFilesOf("film.mkv", names, "de")),
                ElementsAre("film.ass", "Film.srt", "film.de.srt", "film.default.srt"));
}

TEST(SubtitleFiles, UsersLanguage_ComesBeforeOthers)
{
    const std::vector<std::string> names = {"film.de.srt", "film.en.srt", "film.swe.srt", "film.sv.sdh.srt"};
    EXPECT_THAT(namesOf(subtitleFilesOf("film.mkv", names, "sv")),
                ElementsAre("film.sv.sdh.srt", "film.swe.srt", "film.de.srt", "film.en.srt"));
    EXPECT_THAT(namesOf(subtitleFilesOf("film.mkv", names, "fr")),
                ElementsAre("film.de.srt", "film.en.srt", "film.sv.sdh.srt", "film.swe.srt"));
}

TEST(SubtitleFiles, PartsOfTheText_ComeLast)
{
    const std::vector<std::string> names = {"film.forced.srt",   "film.de.forced.srt", "film.en.commentary.srt",
                                            "film.en.signs.srt", "film.en.srt",        "film.sv.srt"};
    EXPECT_THAT(namesOf(subtitleFilesOf("film.mkv", names, "de")),
                ElementsAre("film.en.srt", "film.sv.srt", "film.de.forced.srt", "film.en.commentary.srt",
                            "film.en.signs.srt", "film.forced.srt"));
}

/// Variables of the environment, as they were again at the end.
class LocaleTest : public testing::Test {
protected:
    LocaleTest()
    {
        for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
            const char* const value = std::getenv(name);
            before[name] = value != nullptr ? std::optional<std::string>(value) : std::nullopt;
            unsetenv(name);
        }
    }
    ~LocaleTest() override
    {
        for (const auto& [name, value] : before) {
            value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
        }
    }

    std::map<std::string, std::optional<std::string>> before;
};

TEST_F(LocaleTest, UserLanguage_IsThatOfTheFirstVariableThatIsSet)
{
    EXPECT_EQ(userLanguage(), "");
    setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_EQ(userLanguage(), "de");
    setenv("LC_MESSAGES", "sv_FI@euro", 1);
    EXPECT_EQ(userLanguage(), "sv");
    setenv("LC_ALL", "", 1);
    EXPECT_EQ(userLanguage(), "sv");
    for (const char* const none : {"C", "C.UTF-8", "POSIX"}) {
        setenv("LC_ALL", none, 1);
        EXPECT_EQ(userLanguage(), "");
    }
}

TEST(SubtitleFiles, IndexAndPictures_AreOne)
{
    EXPECT_THAT(subtitleFilesOf("film.mkv", {"film.sub", "Film.IDX", "film.en.idx", "film.en.sub", "film.de.sub"}),
                ElementsAre(SubtitleFileName{"Film.IDX", "", "film.sub"}, SubtitleFileName{"film.de.sub", "de", ""},
                            SubtitleFileName{"film.en.idx", "en", "film.en.sub"}));
}

TEST(SubtitleFiles, IndexWithoutItsPictures_IsLeftOut)
{
    EXPECT_THAT(subtitleFilesOf("film.mkv", {"film.en.idx", "film.de.sub"}),
                ElementsAre(SubtitleFileName{"film.de.sub", "de", ""}));
    EXPECT_THAT(subtitleFilesOf("film.mkv", {"film.idx", "other.sub"}), IsEmpty());
}

TEST(SubtitleFiles, VeryMany_AreCut)
{
    std::vector<std::string> names;
    for (char first = 'z'; first >= 'a'; --first) {
        for (char second = 'z'; second >= 'a'; --second) {
            names.push_back(std::string("film.") + first + second + ".srt");
        }
    }
    const std::vector<SubtitleFileName> files = subtitleFilesOf("film.mkv", names);
    ASSERT_EQ(files.size(), 32);
    EXPECT_EQ(files.front().name, "film.aa.srt");
}

} // namespace
} // namespace desktop
