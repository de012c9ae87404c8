#include "desktop/workers/PictureMemory.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <system_error>

namespace desktop {
namespace {

constexpr std::size_t kSize = 64UL * 36 * 4;

TEST(PictureMemory, Written_ByFile_IsRead)
{
    PictureMemories memories;
    const auto memory = memories.take(kSize);
    ASSERT_EQ(memory->size(), kSize);
    ASSERT_EQ(pwrite(memory->fd(), "ab", 2, kSize - 2), 2);
    EXPECT_EQ(memory->pixels()[kSize - 2], 'a');
    EXPECT_EQ(memory->pixels()[kSize - 1], 'b');
}

TEST(PictureMemory, Cut_ByOtherSide_StaysWhole)
{
    PictureMemories memories;
    const auto memory = memories.take(kSize);
    EXPECT_NE(ftruncate(memory->fd(), 0), 0);
    EXPECT_EQ(memory->pixels()[kSize - 1], 0);
}

TEST(PictureMemory, Taken_OfNoSize_Throws)
{
    EXPECT_THROW(PictureMemories().take(0), std::system_error);
}

TEST(PictureMemories, Taken_OncePictureIsRead_IsUsedAgain)
{
    PictureMemories memories;
    auto picture = memories.picture(memories.take(kSize));
    const std::uint8_t* const pixels = picture.get();
    EXPECT_NE(memories.take(kSize)->pixels(), pixels) << "while it is being read";
    picture.reset();
    EXPECT_EQ(memories.take(kSize)->pixels(), pixels);
}

// Somebody may still draw into what has been given up without a picture.
TEST(PictureMemories, Taken_AfterMemoryWithoutPicture_IsAnother)
{
    PictureMemories memories;
    auto givenUp = memories.take(kSize);
    ASSERT_EQ(pwrite(givenUp->fd(), "a", 1, 0), 1);
    givenUp.reset();
    EXPECT_EQ(memories.take(kSize)->pixels()[0], 0);
}

TEST(PictureMemories, Taken_OfOtherSize_HasThatSize)
{
    PictureMemories memories;
    memories.picture(memories.take(kSize)).reset();
    EXPECT_EQ(memories.take(2 * kSize)->size(), 2 * kSize);
}

TEST(PictureMemories, Cleared_WithSpares_LetsGoOfThem)
{
    PictureMemories memories;
    const auto memory = memories.take(kSize);
    memories.picture(memory).reset();
    EXPECT_GT(memory.use_count(), 1);
    memories.clear();
    EXPECT_EQ(memory.use_count(), 1);
}

TEST(PictureMemories, Read_MoreThanFollowOneAnother_FewAreKept)
{
    PictureMemories memories;
    std::vector<std::shared_ptr<PictureMemory>> taken;
    std::vector<std::shared_ptr<const std::uint8_t>> pictures;
    for (int i = 0; i < 5; ++i) {
        taken.push_back(memories.take(kSize));
        pictures.push_back(memories.picture(taken.back()));
    }
    pictures.clear();
    long kept = 0;
    for (const auto& memory : taken) {
        kept += memory.use_count() - 1;
    }
    EXPECT_EQ(kept, 2);
}

TEST(PictureMemories, Read_AfterTheirEnd_IsStillThere)
{
    auto memories = std::make_unique<PictureMemories>();
    const auto picture = memories->picture(memories->take(kSize));
    memories.reset();
    EXPECT_EQ(picture.get()[kSize - 1], 0);
}

} // namespace
} // namespace desktop
