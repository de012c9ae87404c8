#include "desktop/metadata/MetadataDatabase.h"

#include "desktop/base/Sqlite.h"

#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

namespace desktop {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const FileStamp kStamp = {5'000'000'000, 1'700'000'000'123'456'789};

StoredFile song(const std::string& name, const std::string& title = "A title")
{
    StoredFile file;
    file.name = name;
    file.stamp = kStamp;
    file.metadata = {title,      {"An artist", "Another; one"},
                     "An album", {"A genre"},
                     "2001",     "2024-05-17 12:30:00",
                     185,        640,
                     480,        90,
                     true,       "A fault"};
    return file;
}

class MetadataDatabaseTest : public testing::Test {
protected:
    std::string databaseFile() const
    {
        for (const auto& file : fs::directory_iterator(cache.path())) {
            if (file.path().extension() == ".sqlite") {
                return file.path();
            }
        }
        return "";
    }

    const StoredPlace folder = {"stick", "Music/Jazz"};
    testsupport::TemporaryDirectory cache;
};

TEST_F(MetadataDatabaseTest, WhatWasStored_IsFoundWholeByTheNextProgram)
{
    MetadataDatabase(cache.path()).store(folder, {song("caf\xE9.mp3")});
    const KnownFiles known = MetadataDatabase(cache.path()).filesOf(folder);
    const MediaMetadata* metadata = known.find("caf\xE9.mp3", kStamp);
    ASSERT_NE(metadata, nullptr);
    EXPECT_EQ(metadata->title, "A title");
    EXPECT_THAT(metadata->artists, testing::ElementsAre("An artist", "Another; one"));
    EXPECT_EQ(metadata->album, "An album");
    EXPECT_THAT(metadata->genres, testing::ElementsAre("A genre"));
    EXPECT_EQ(metadata->year, "2001");
    EXPECT_EQ(metadata->taken, "2024-05-17 12:30:00");
    EXPECT_EQ(metadata->duration, 185);
    EXPECT_EQ(metadata->width, 640);
    EXPECT_EQ(metadata->height, 480);
    EXPECT_EQ(metadata->rotation, 90);
    EXPECT_TRUE(metadata->panorama);
    EXPECT_EQ(metadata->error, "A fault");
}

TEST_F(MetadataDatabaseTest, FileInAnotherState_IsNotKnown)
{
    MetadataDatabase index("");
    index.store(folder, {song("a.mp3")});
    const KnownFiles known = index.filesOf(folder);
    EXPECT_EQ(known.find("a.mp3", {kStamp.size + 1, kStamp.modified}), nullptr);
    EXPECT_EQ(known.find("a.mp3", {kStamp.size, kStamp.modified + 1}), nullptr);
    EXPECT_EQ(known.find("b.mp3", kStamp), nullptr);
}

TEST_F(MetadataDatabaseTest, FileStoredAgain_HasItsNewFacts)
{
    MetadataDatabase index("");
    index.store(folder, {song("a.mp3", "Old"), song("b.mp3", "Other")});
    index.store(folder, {song("a.mp3", "New")});
    const KnownFiles known = index.filesOf(folder);
    EXPECT_EQ(known.find("a.mp3", kStamp)->title, "New");
    EXPECT_EQ(known.find("b.mp3", kStamp)->title, "Other");
}

TEST_F(MetadataDatabaseTest, FilesOfManyFolders_AreStoredTogether)
{
    MetadataDatabase index("");
    index.store(
        {{{"stick", "a"}, {song("1.mp3", "One")}}, {{"stick", "b"}, {song("1.mp3", "Two"), song("2.mp3", "Three")}}});
    EXPECT_EQ(index.filesOf({"stick", "a"}).find("1.mp3", kStamp)->title, "One");
    EXPECT_EQ(index.filesOf({"stick", "b"}).find("1.mp3", kStamp)->title, "Two");
    EXPECT_EQ(index.filesOf({"stick", "b"}).find("2.mp3", kStamp)->title, "Three");
}

TEST_F(MetadataDatabaseTest, Folders_AreToldApartByStickAndPath)
{
    MetadataDatabase index("");
    index.store(folder, {song("a.mp3")});
    EXPECT_TRUE(index.filesOf({"other stick", folder.path}).empty());
    EXPECT_TRUE(index.filesOf({folder.volume, "Music"}).empty());
    EXPECT_FALSE(index.filesOf(folder).empty());
}

TEST_F(MetadataDatabaseTest, Forgetting_TakesTheFolderAndAllBelowAndNothingElse)
{
    MetadataDatabase index("");
    const std::vector<std::string> paths = {"", "a", "a/b", "a/b/c", "a b", "a0", "b"};
    for (const std::string& path : paths) {
        index.store({"stick", path}, {song("x.mp3")});
        index.store({"other", path}, {song("x.mp3")});
    }
    const auto known = [&](const std::string& volume) {
        std::vector<std::string> left;
        std::copy_if(paths.begin(), paths.end(), std::back_inserter(left), [&](const std::string& path) {
            return !index.filesOf({volume, path}).empty();
        });
        return left;
    };
    index.forgetBelow({"stick", "a"});
    EXPECT_THAT(known("stick"), testing::ElementsAre("", "a b", "a0", "b"));
    index.forgetBelow({"stick", ""});
    EXPECT_TRUE(known("stick").empty());
    EXPECT_EQ(known("other"), paths);
}

TEST_F(MetadataDatabaseTest, DamagedDatabase_IsSetAsideAndBegunAnew)
{
    MetadataDatabase(cache.path()).store(folder, {song("a.mp3")});
    const std::string file = databaseFile();
    std::ofstream(file, std::ios::trunc) << std::string(8192, 'x');
    testing::internal::CaptureStdout();
    MetadataDatabase index(cache.path());
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("set aside as " + file + ".damaged"));
    EXPECT_TRUE(index.filesOf(folder).empty());
    index.store(folder, {song("a.mp3")});
    EXPECT_FALSE(MetadataDatabase(cache.path()).filesOf(folder).empty());
    EXPECT_TRUE(fs::exists(file + ".damaged"));
}

TEST_F(MetadataDatabaseTest, DatabaseDamagedWhileItIsOpen_IsReplacedAndTakesWhatComes)
{
    std::vector<StoredFile> many;
    for (int i = 0; i < 2000; ++i) {
        many.push_back(song(std::to_string(i) + ".mp3"));
    }
    MetadataDatabase(cache.path()).store(folder, many);
    MetadataDatabase index(cache.path());
    // All but the first page, which has the tables' names.
    std::fstream file(databaseFile(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(4096);
    file << std::string(fs::file_size(databaseFile()) - 4096, 'x');
    file.close();
    testing::internal::CaptureStdout();
    index.store(folder, {song("new.mp3")});
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the media index is damaged"));
    EXPECT_NE(index.filesOf(folder).find("new.mp3", kStamp), nullptr);
}

TEST_F(MetadataDatabaseTest, FolderThatCannotBeUsed_LeavesTheIndexInMemory)
{
    cache.makeFile("file");
    testing::internal::CaptureStdout();
    MetadataDatabase index(cache.path("file/below"));
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("the media index is kept in memory"));
    index.store(folder, {song("a.mp3")});
    EXPECT_FALSE(index.filesOf(folder).empty());
}

TEST_F(MetadataDatabaseTest, ManyThreads_LoseNothing)
{
    MetadataDatabase index(cache.path());
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&index, thread] {
            for (int i = 0; i < 50; ++i) {
                index.store({"stick", std::to_string(thread)}, {song(std::to_string(i))});
                index.filesOf({"stick", std::to_string(i % 4)});
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (int thread = 0; thread < 4; ++thread) {
        const KnownFiles known = index.filesOf({"stick", std::to_string(thread)});
        for (int i = 0; i < 50; ++i) {
            EXPECT_NE(known.find(std::to_string(i), kStamp), nullptr) << thread << " " << i;
        }
    }
}

TEST_F(MetadataDatabaseTest, WhatAnOlderReadingTold_IsForgotten)
{
    MetadataDatabase(cache.path()).store(folder, {song("a.mp3")});
    SqliteDatabase(databaseFile()).execute("PRAGMA user_version = 1");
    EXPECT_EQ(MetadataDatabase(cache.path()).filesOf(folder).find("a.mp3", kStamp), nullptr);
    MetadataDatabase(cache.path()).store(folder, {song("a.mp3")});
    EXPECT_NE(MetadataDatabase(cache.path()).filesOf(folder).find("a.mp3", kStamp), nullptr);
}

} // namespace
} // namespace desktop
