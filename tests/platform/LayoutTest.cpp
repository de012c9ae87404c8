#include "platform/SocMiddleware.h"
#include "platform/SocMwEvents.h"
#include "support/PluginState.h"

#include "platform/FakePlatform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <type_traits>

// Where everything that crosses the boundary lies. The plugin and the platform are built apart from each other, so nothing
// here may move by accident. Two numbers: on 64 bits and on 32.

namespace {

constexpr std::size_t onThisArchitecture(std::size_t on64, std::size_t on32)
{
    return sizeof(void*) == 8 ? on64 : on32;
}

#define SIZE_IS(record, on64, on32) \
    static_assert(sizeof(record) == onThisArchitecture(on64, on32), #record " has another size")
#define LIES_AT(record, field, on64, on32) \
    static_assert(offsetof(record, field) == onThisArchitecture(on64, on32), #record "::" #field " has moved")

SIZE_IS(media_music_info_s, 96, 72);
LIES_AT(media_music_info_s, artist, 0, 0);
LIES_AT(media_music_info_s, album, 32, 24);
LIES_AT(media_music_info_s, genre, 64, 48);

SIZE_IS(media_file_info_s, 216, 160);
LIES_AT(media_file_info_s, path, 0, 0);
LIES_AT(media_file_info_s, type, 32, 24);
LIES_AT(media_file_info_s, title, 40, 28);
LIES_AT(media_file_info_s, year, 72, 52);
LIES_AT(media_file_info_s, duration, 104, 76);
LIES_AT(media_file_info_s, width, 108, 80);
LIES_AT(media_file_info_s, height, 112, 84);
LIES_AT(media_file_info_s, music, 120, 88);

SIZE_IS(FolderFileInfo_s, 152, 120);
LIES_AT(FolderFileInfo_s, id, 0, 0);
LIES_AT(FolderFileInfo_s, type, 4, 4);
LIES_AT(FolderFileInfo_s, size, 8, 8);
LIES_AT(FolderFileInfo_s, ctime, 16, 16);
LIES_AT(FolderFileInfo_s, name, 48, 40);
LIES_AT(FolderFileInfo_s, path, 80, 64);
LIES_AT(FolderFileInfo_s, title, 112, 88);
LIES_AT(FolderFileInfo_s, isPhoto360, 144, 112);

SIZE_IS(page_option, 72, 56);
LIES_AT(page_option, pageid, 0, 0);
LIES_AT(page_option, type, 4, 4);
LIES_AT(page_option, keystr, 8, 8);
LIES_AT(page_option, dirpath, 40, 32);

SIZE_IS(meta_data_t, 136, 100);
LIES_AT(meta_data_t, size, 0, 0);
LIES_AT(meta_data_t, title, 32, 24);
LIES_AT(meta_data_t, date, 64, 48);
LIES_AT(meta_data_t, codec, 96, 72);
LIES_AT(meta_data_t, dolby, 128, 96);

SIZE_IS(browser_codec, 512, 388);
LIES_AT(browser_codec, strTitle, 0, 0);
LIES_AT(browser_codec, strVCodec, 32, 24);
LIES_AT(browser_codec, strResolu, 64, 48);
LIES_AT(browser_codec, strACodec, 96, 72);
LIES_AT(browser_codec, strSubFormat, 128, 96);
LIES_AT(browser_codec, strAprofile, 160, 120);
LIES_AT(browser_codec, strAlevels, 192, 144);
LIES_AT(browser_codec, FrameRate, 224, 168);
LIES_AT(browser_codec, Achannel, 228, 172);
LIES_AT(browser_codec, Afrequen, 232, 176);
LIES_AT(browser_codec, Abitrate, 236, 180);
LIES_AT(browser_codec, culVideoCodec, 240, 184);
LIES_AT(browser_codec, culAudioCodec, 244, 188);
LIES_AT(browser_codec, Mchanel, 248, 192);
LIES_AT(browser_codec, strMcodec, 256, 196);
LIES_AT(browser_codec, strMfrequen, 288, 220);
LIES_AT(browser_codec, strMbirate, 320, 244);
LIES_AT(browser_codec, strMaprofile, 352, 268);
LIES_AT(browser_codec, strMalevels, 384, 292);
LIES_AT(browser_codec, strPcodec, 416, 316);
LIES_AT(browser_codec, strPresolu, 448, 340);
LIES_AT(browser_codec, strPJepg, 480, 364);

SIZE_IS(thumbnail_ready_s, 24, 16);
LIES_AT(thumbnail_ready_s, index, 0, 0);
LIES_AT(thumbnail_ready_s, ok, 4, 4);
LIES_AT(thumbnail_ready_s, path, 8, 8);
LIES_AT(thumbnail_ready_s, filepath, 16, 12);

SIZE_IS(play_state_s, 8, 8);
LIES_AT(play_state_s, speed, 0, 0);
LIES_AT(play_state_s, hdr, 4, 4);

SIZE_IS(music_stop_info_s, 40, 28);
LIES_AT(music_stop_info_s, curIdx, 0, 0);
LIES_AT(music_stop_info_s, path, 8, 4);

SIZE_IS(subtitle_image_s, 40, 32);
LIES_AT(subtitle_image_s, startH, 0, 0);
LIES_AT(subtitle_image_s, startV, 4, 4);
LIES_AT(subtitle_image_s, width, 8, 8);
LIES_AT(subtitle_image_s, height, 12, 12);
LIES_AT(subtitle_image_s, size, 16, 16);
LIES_AT(subtitle_image_s, reserved, 20, 20);
LIES_AT(subtitle_image_s, format, 24, 24);
LIES_AT(subtitle_image_s, picture, 32, 28);

SIZE_IS(subtitle_info_s, 80, 60);
LIES_AT(subtitle_info_s, type, 0, 0);
LIES_AT(subtitle_info_s, text, 8, 4);
LIES_AT(subtitle_info_s, image, 40, 28);

SIZE_IS(dmr_seek_s, 8, 8);
LIES_AT(dmr_seek_s, pos, 0, 0);
LIES_AT(dmr_seek_s, mod, 4, 4);

static_assert(sizeof(std::shared_ptr<SocMwStorageUsbMgr>) == 2 * sizeof(void*));

/// Whether any integer of a request fits @p Enum and comes out again by itself.
template <typename Enum>
constexpr bool kIsPlainInt = std::is_same_v<std::underlying_type_t<Enum>, int>&& std::is_convertible_v<Enum, int>;

static_assert(kIsPlainInt<FileType>);
static_assert(kIsPlainInt<GroupFileType>);
static_assert(kIsPlainInt<PlayerModeE>);
static_assert(kIsPlainInt<SocMwEventId>);
static_assert(kIsPlainInt<tvfirmware::UsbDevStatus>);

/// Place of @p member in the table of virtual members, or -1 for one that is reached by name. A pointer to a member is two
/// words: the table's offset in bytes and an adjustment. ARM marks a virtual one in the adjustment, others in the offset.
template <typename Member>
std::ptrdiff_t placeOf(Member member)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof member == sizeof words);
    std::memcpy(words, &member, sizeof words);
#if defined(__arm__) || defined(__aarch64__)
    const bool isVirtual = (words[1] & 1) != 0;
    const std::ptrdiff_t offset = words[0];
#else
    const bool isVirtual = (words[0] & 1) != 0;
    const std::ptrdiff_t offset = words[0] - 1;
#endif
    return isVirtual ? offset / static_cast<std::ptrdiff_t>(sizeof(void*)) : -1;
}

TEST(Layout, VirtualMembersOfTheStorageManager_FollowItsTwoDestructorsInTheirOrder)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<SocMwStorageUsbMgr>);
    EXPECT_EQ(placeOf(&SocMwStorageUsbMgr::repeatModeSet), 2);
    EXPECT_EQ(placeOf(&SocMwStorageUsbMgr::videoPicSizeSet), 3);
    EXPECT_EQ(placeOf(&SocMwStorageUsbMgr::videoPicSizeGet), 4);
    EXPECT_EQ(placeOf(&SocMwStorageUsbMgr::photoRotateSet), 5);
}

// The plugin calls the folder browser inside the manager.
TEST(Layout, FolderBrowser_FollowsTheTableOfVirtualMembers)
{
    const auto member = &SocMwStorageUsbMgr::m_folderBrowser;
    std::size_t offset = 0;
    static_assert(sizeof member == sizeof offset);
    std::memcpy(&offset, &member, sizeof offset);
    EXPECT_EQ(offset, sizeof(void*));
}

static_assert(std::is_same_v<decltype(ExposedPlugin::m_pPublishCallback), PublishNotificationCallback>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_scanChannel), tvfirmware::ScanChannel>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_thumbnailChannel), tvfirmware::ThumbnailChannel>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_thumbnailIndex), std::int32_t>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_intList), std::vector<int>>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_itemCountPerPage), std::int32_t>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_pagingPosition), std::int32_t>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_directoryChanging), bool>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_requestSlots), tvfirmware::AsyncReqNotify[4]>);
static_assert(std::is_same_v<decltype(ExposedPlugin::m_thumbnailTotal), std::int32_t>);

// Destroyed in reverse.
TEST(Layout, FieldsOfThePlugin_StandInTheirOrderFromItsStart)
{
    FakePlatform platform;
    const ExposedPlugin plugin;
    const std::vector<const void*> fields = {
        &plugin.m_pPublishCallback, &plugin.m_scanChannel,      &plugin.m_thumbnailChannel, &plugin.m_thumbnailIndex,
        &plugin.m_intList,          &plugin.m_itemCountPerPage, &plugin.m_pagingPosition,   &plugin.m_directoryChanging,
        &plugin.m_requestSlots,     &plugin.m_thumbnailTotal};
    EXPECT_EQ(fields.front(), &plugin);
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end(), std::less<>()));
}

TEST(Layout, OtherMembersOfTheStorageManager_AreReachedByName)
{
    EXPECT_EQ(placeOf(&SocMwStorageUsbMgr::setListener), -1);
    EXPECT_EQ(placeOf(&SocMwStorageUsbMgr::playMediaFile), -1);
    EXPECT_EQ(placeOf(&SocMwStorageUsbMgr::getbrowsercodec), -1);
}

} // namespace
