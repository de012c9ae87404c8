#include "desktop/metadata/PlayPositions.h"

#include "desktop/metadata/MetadataDatabase.h"

#include "tests/desktop/support/Waiting.h"
#include "tests/support/StdoutCapture.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Optional;

constexpr double kHour = 3600;

class PlayPositionsTest : public testing::Test {
protected:
    std::string databaseFile() const { return cache.path("play-positions.sqlite"); }

    /// What a program that starts now finds of @p file.
    std::optional<double> findAnew(const Location& file) const { return PlayPositions(cache.path()).find(file); }

    static Location numbered(int number) { return {"/media/stick", "./" + std::to_string(number) + ".mkv", "id"}; }

    const Location film = {"/media/stick", "./Films/caf\xE9.mkv", "id"};
    const Location other = {"/media/stick", "./Films/other.mkv", "id"};
    testsupport::TemporaryDirectory cache;
};

TEST_F(PlayPositionsTest, NotedPosition_IsFoundAtOnceAndByTheNextProgram)
{
    {
        PlayPositions positions(cache.path());
        EXPECT_EQ(positions.find(film), std::nullopt);
        positions.note(film, 1234.567, kHour);
        EXPECT_THAT(positions.find(film), Optional(1234.567));
        EXPECT_EQ(positions.find(other), std::nullopt);
    }
    EXPECT_THAT(findAnew(film), Optional(1234.567));
}

TEST_F(PlayPositionsTest, PositionNotedAgain_TakesThePlaceOfTheFirst)
{
    {
        PlayPositions positions(cache.path());
        positions.note(film, 1000, kHour);
        positions.note(film, 900, kHour);
        EXPECT_THAT(positions.find(film), Optional(900));
    }
    EXPECT_THAT(findAnew(film), Optional(900));
}

TEST_F(PlayPositionsTest, StickUnderAnotherMountName_HasItsPositions)
{
    PlayPositions positions("");
    positions.note(film, 1000, kHour);
    EXPECT_THAT(positions.find({"/run/media/other", ".//Films/./caf\xE9.mkv", "id"}), Optional(1000));
    EXPECT_EQ(positions.find({film.volume, film.relative, "another id"}), std::nullopt);
}

TEST_F(PlayPositionsTest, StickWithoutAnId_IsKnownByItsFolder)
{
    PlayPositions positions("");
    positions.note({"/media/a", "./film.mkv"}, 1000, kHour);
    EXPECT_THAT(positions.find({"/media/a", "./film.mkv"}), Optional(1000));
    EXPECT_EQ(positions.find({"/media/b", "./film.mkv"}), std::nullopt);
}

struct Place {
    const char* name;
    double seconds;
    double duration;
    bool counts;
};

class PlayPositionsPlaceTest : public testing::TestWithParam<Place> {};

TEST_P(PlayPositionsPlaceTest, Note_IsKeptOrForgetsTheFile)
{
    const Location film = {"/media/stick", "./film.mkv", "id"};
    const auto [name, seconds, duration, counts] = GetParam();
    PlayPositions positions("");
    positions.note(film, 60, 2 * kHour);
    positions.note(film, 1800, 2 * kHour);
    positions.note(film, seconds, duration);
    EXPECT_EQ(positions.find(film), counts ? std::optional(seconds) : std::nullopt);
}

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Places, PlayPositionsPlaceTest,
    testing::Values(Place{"Start", 0, 60, false}, Place{"BeforeTheStart", -1, 60, false},
                    Place{"FirstFiveSeconds", 4.9, 60, false}, Place{"AfterFiveSeconds", 5, 60, true},
                    Place{"BeforeTheLastFiveSeconds", 55, 60, true}, Place{"LastFiveSeconds", 55.1, 60, false},
                    Place{"End", 60, 60, false}, Place{"BehindTheEnd", 61, 60, false},
                    Place{"FirstTwentieth", 179, kHour, false}, Place{"AfterTheFirstTwentieth", 180, kHour, true},
                    Place{"BeforeTheLastTwentieth", 3420, kHour, true}, Place{"LastTwentieth", 3421, kHour, false},
                    Place{"MiddleOfAShortFilm", 4, 8, false}, Place{"UnknownDuration", 1000, 0, true},
                    Place{"StartOfUnknownDuration", 4, 0, false}, Place{"NoDuration", 1000, kNoNumber, true},
                    Place{"NoNumber", kNoNumber, 60, false}, Place{"InfiniteDuration", 1000, kInfinite, true},
                    Place{"Infinite", kInfinite, kInfinite, false}),
    [](const auto& row) { return row.param.name; });

TEST_F(PlayPositionsTest, EndOfAFilm_IsForgottenForTheNextProgramToo)
{
    PlayPositions(cache.path()).note(film, 1000, kHour);
    PlayPositions(cache.path()).note(film, kHour, kHour);
    EXPECT_EQ(findAnew(film), std::nullopt);
}

TEST_F(PlayPositionsTest, Forgetting_TakesOneFileOrAll)
{
    {
        PlayPositions positions(cache.path());
        for (int i = 0; i < 3; ++i) {
            positions.note(numbered(i), 1000, kHour);
        }
        positions.forget(numbered(1));
        EXPECT_EQ(positions.find(numbered(1)), std::nullopt);
    }
    EXPECT_THAT(findAnew(numbered(0)), Optional(1000));
    EXPECT_EQ(findAnew(numbered(1)), std::nullopt);
    {
        PlayPositions positions(cache.path());
        positions.forgetAll();
        EXPECT_EQ(positions.find(numbered(0)), std::nullopt);
        positions.note(film, 1000, kHour);
    }
    EXPECT_EQ(findAnew(numbered(0)), std::nullopt);
    EXPECT_EQ(findAnew(numbered(2)), std::nullopt);
    EXPECT_THAT(findAnew(film), Optional(1000));
}

TEST_F(PlayPositionsTest, ProgramThatIsKilled_HasWrittenItsNoteSoon)
{
    PlayPositions positions(cache.path()); // never ends, as far as the other ones can see
    positions.note(film, 1000, kHour);
    EXPECT_TRUE(testsupport::becomes([this] { return findAnew(film).has_value(); }));
    positions.forget(film);
    EXPECT_TRUE(testsupport::becomes([this] { return !findAnew(film).has_value(); }));
}

TEST_F(PlayPositionsTest, DiskThatDoesNotAnswer_HoldsNothingUp)
{
    {
        PlayPositions positions(cache.path());
        SqliteDatabase busy(databaseFile());
        busy.execute("BEGIN EXCLUSIVE");
        for (int i = 0; i < 100; ++i) {
            positions.note(numbered(i), 1000 + i, kHour);
        }
        EXPECT_THAT(positions.find(numbered(99)), Optional(1099));
        EXPECT_EQ(findAnew(numbered(99)), std::nullopt); // the notes have not waited for the database
        busy.execute("COMMIT");
    }
    EXPECT_THAT(findAnew(numbered(0)), Optional(1000));
    EXPECT_THAT(findAnew(numbered(99)), Optional(1099));
}

TEST_F(PlayPositionsTest, TooManyPositions_ForgetTheOneNotedLongestAgo)
{
    constexpr int kMost = 10'000;
    {
        PlayPositions positions(cache.path());
        for (int i = 0; i < kMost; ++i) {
            positions.note(numbered(i), 1000, kHour);
        }
    }
    {
        PlayPositions positions(cache.path());
        positions.note(numbered(0), 1001, kHour);
        positions.note(film, 1000, kHour);
        EXPECT_EQ(positions.find(numbered(1)), std::nullopt);
        EXPECT_THAT(positions.find(numbered(2)), Optional(1000));
    }
    PlayPositions positions(cache.path());
    EXPECT_THAT(positions.find(numbered(0)), Optional(1001));
    EXPECT_EQ(positions.find(numbered(1)), std::nullopt);
    EXPECT_THAT(positions.find(numbered(2)), Optional(1000));
    EXPECT_THAT(positions.find(film), Optional(1000));
}

TEST_F(PlayPositionsTest, DamagedDatabase_IsSetAsideAndBegunAnew)
{
    PlayPositions(cache.path()).note(film, 1000, kHour);
    std::ofstream(databaseFile(), std::ios::trunc) << std::string(8192, 'x');
    testing::internal::CaptureStdout();
    PlayPositions(cache.path()).note(other, 2000, kHour);
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("the list of play positions is damaged (file is not a database); it is set aside as " +
                          databaseFile() + ".damaged"));
    EXPECT_TRUE(fs::exists(databaseFile() + ".damaged"));
    EXPECT_EQ(findAnew(film), std::nullopt);
    EXPECT_THAT(findAnew(other), Optional(2000));
}

TEST_F(PlayPositionsTest, DatabaseDamagedWhileItIsOpen_LosesNothing)
{
    constexpr int kMany = 2000;
    {
        PlayPositions positions(cache.path());
        for (int i = 0; i < kMany; ++i) {
            positions.note(numbered(i), 1000, kHour);
        }
    }
    testing::internal::CaptureStdout();
    {
        PlayPositions positions(cache.path());
        // Another program's change makes this one read the file again.
        SqliteDatabase(databaseFile()).execute("UPDATE positions SET number = number + 1; PRAGMA wal_checkpoint(TRUNCATE)");
        std::fstream file(databaseFile(), std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(4096); // all but the first page, which has the table's name
        file << std::string(fs::file_size(databaseFile()) - 4096, 'x');
        file.close();
        positions.note(film, 2000, kHour);
    }
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the list of play positions is damaged"));
    PlayPositions positions(cache.path());
    EXPECT_THAT(positions.find(film), Optional(2000));
    for (int i = 0; i < kMany; ++i) {
        EXPECT_THAT(positions.find(numbered(i)), Optional(1000)) << i;
    }
}

class RefusedPlayPositionsTest : public PlayPositionsTest {
protected:
    /// Lets every write of kind @p write, INSERT or DELETE, fail until allow().
    void refuse(const std::string& write)
    {
        const std::string trigger =
            "CREATE TRIGGER refuse BEFORE " + write + " ON positions BEGIN SELECT RAISE(ABORT, 'refused'); END";
        SqliteDatabase(databaseFile()).execute(trigger.c_str());
    }

    void allow() { SqliteDatabase(databaseFile()).execute("DROP TRIGGER refuse"); }

    bool hasBeenRefused()
    {
        return testsupport::becomes([this] {
            return output.take().find("the list of play positions cannot be used: refused") != std::string::npos;
        });
    }

    testsupport::StdoutCapture output;
};

TEST_F(RefusedPlayPositionsTest, NoteThatCouldNotBeWritten_IsWrittenWithTheNext)
{
    {
        PlayPositions positions(cache.path());
        refuse("INSERT");
        positions.note(film, 1000, kHour);
        EXPECT_TRUE(hasBeenRefused());
        allow();
        positions.note(other, 2000, kHour);
        EXPECT_TRUE(testsupport::becomes([this] { return findAnew(other).has_value(); }));
        EXPECT_THAT(findAnew(film), Optional(1000));
    }
    EXPECT_EQ(output.take(), "");
}

TEST_F(RefusedPlayPositionsTest, NoteThatCouldNotBeWritten_IsWrittenAtTheEnd)
{
    {
        PlayPositions positions(cache.path());
        refuse("INSERT");
        positions.note(film, 1000, kHour);
        EXPECT_TRUE(hasBeenRefused());
        allow();
    }
    EXPECT_THAT(findAnew(film), Optional(1000));
}

TEST_F(RefusedPlayPositionsTest, ForgettingThatCouldNotBeWritten_IsWrittenWithTheNext)
{
    PlayPositions(cache.path()).note(film, 1000, kHour);
    {
        PlayPositions positions(cache.path());
        refuse("DELETE");
        positions.forget(film);
        EXPECT_TRUE(hasBeenRefused());
        allow();
        positions.note(other, 2000, kHour);
    }
    EXPECT_EQ(findAnew(film), std::nullopt);
    EXPECT_THAT(findAnew(other), Optional(2000));
}

TEST_F(RefusedPlayPositionsTest, NoteThatCouldNotBeWritten_GivesWayToALaterOne)
{
    {
        PlayPositions positions(cache.path());
        refuse("INSERT");
        positions.note(film, 1000, kHour);
        EXPECT_TRUE(hasBeenRefused());
        allow();
        positions.note(film, 2000, kHour);
    }
    EXPECT_THAT(findAnew(film), Optional(2000));
    {
        PlayPositions positions(cache.path());
        refuse("INSERT");
        positions.note(film, 1000, kHour);
        EXPECT_TRUE(hasBeenRefused());
        allow();
        positions.forgetAll();
    }
    EXPECT_EQ(findAnew(film), std::nullopt);
}

TEST_F(RefusedPlayPositionsTest, FailedWrite_LeavesWhatAnotherProgramHasWritten)
{
    {
        PlayPositions positions(cache.path());
        refuse("INSERT");
        positions.note(film, 1000, kHour);
        EXPECT_TRUE(hasBeenRefused());
        allow();
        PlayPositions(cache.path()).note(other, 2000, kHour);
        positions.note(film, 1100, kHour);
    }
    EXPECT_THAT(findAnew(film), Optional(1100));
    EXPECT_THAT(findAnew(other), Optional(2000));
}

TEST_F(PlayPositionsTest, ListThatCouldNotBeRead_IsNotLost)
{
    PlayPositions(cache.path()).note(film, 1000, kHour);
    SqliteDatabase database(databaseFile());
    // A list that can be opened, and not be read: its largest negative number has no absolute value.
    database.execute("ALTER TABLE positions RENAME TO kept;"
                     "CREATE VIEW positions AS SELECT volume, path, milliseconds, abs(-9223372036854775807 - 1) AS number"
                     " FROM kept;"
                     "CREATE TRIGGER inserted INSTEAD OF INSERT ON positions BEGIN SELECT 1; END;"
                     "CREATE TRIGGER deleted INSTEAD OF DELETE ON positions BEGIN SELECT 1; END");
    {
        testing::internal::CaptureStdout();
        PlayPositions positions(cache.path());
        EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the list of play positions cannot be used"));
        EXPECT_EQ(positions.find(film), std::nullopt);
        database.execute("DROP VIEW positions; ALTER TABLE kept RENAME TO positions");
        positions.note(other, 2000, kHour);
    }
    EXPECT_THAT(findAnew(film), Optional(1000));
    EXPECT_THAT(findAnew(other), Optional(2000));
}

TEST_F(PlayPositionsTest, ProgramsSideBySide_KeepTheirNotesInTheOrderOfTheirTimes)
{
    {
        PlayPositions first(cache.path());
        PlayPositions second(cache.path());
        first.note(numbered(0), 1000, kHour);
        first.note(numbered(1), 1000, kHour);
        second.note(numbered(2), 1000, kHour);
    }
    SqliteDatabase database(databaseFile());
    SqliteStatement byNumber(database, "SELECT path FROM positions ORDER BY number");
    SqliteStatement::Run run(byNumber);
    for (const char* const expected : {"0.mkv", "1.mkv", "2.mkv"}) {
        ASSERT_TRUE(run.step());
        EXPECT_THAT(run.bytes(0), HasSubstr(expected));
    }
}

TEST_F(PlayPositionsTest, FolderThatCannotBeUsed_LeavesThePositionsInMemory)
{
    cache.makeFile("file");
    testing::internal::CaptureStdout();
    PlayPositions positions(cache.path("file/below"));
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the list of play positions is kept in memory"));
    positions.note(film, 1000, kHour);
    EXPECT_THAT(positions.find(film), Optional(1000));
}

TEST_F(PlayPositionsTest, DamagedMediaIndex_LeavesThePositions)
{
    MetadataDatabase(cache.path()).store({"id", "Films"}, {});
    PlayPositions(cache.path()).note(film, 1000, kHour);
    std::ofstream(cache.path("media-index-2.sqlite"), std::ios::trunc) << std::string(8192, 'x');
    testing::internal::CaptureStdout();
    MetadataDatabase index(cache.path());
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the media index is damaged"));
    EXPECT_THAT(findAnew(film), Optional(1000));
}

} // namespace
} // namespace desktop
