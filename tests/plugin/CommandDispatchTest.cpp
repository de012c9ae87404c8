#include "plugin/CommandHash.h"
#include "plugin/CommandTable.h"
#include "plugin/StorageMediaPlugin.h"

#include "support/Protocol.h"
#include "support/Scenario.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

/// A command and what shows that its own handler ran, for a request that holds nothing but the hash.
struct DispatchedCommand {
    int index;
    const char* name;
    const char* function;
    bool result;
    Journal journal;
};

Journal statusCall(const std::string& call)
{
    return {manager(), did(call)};
}

Journal missing(const Happening& read, const std::string& message)
{
    return {read, err(message)};
}

const std::vector<DispatchedCommand>& commands()
{
    static const std::vector<DispatchedCommand> all = {
        {0, "storagemedia.folder.chgdir", "chgdir", false, missing(readString("channelId"), "unknown channelId")},
        {1, "storagemedia.folder.user.cancel", "userCancel", true, statusCall("userCancel()")},
        {2, "storagemedia.video.searchFiles", "searchFiles", false, missing(readString("channelId"), "unknown channelId")},
        {3,
         "storagemedia.media.entermmbroswer",
         "enterMmBrowser",
         true,
         {dbg("Enter MM Browser"), readInt("srctype"), war("unknown srctype, set default: 0"),
          dbg("Enter MM Browser Source: USB"), manager(), did("enterMmBrowser(null, 0)")}},
        {4,
         "storagemedia.get.play.mode",
         "getPlayMode",
         true,
         {dbg("Enter getPlayMode"), readInt("mediaType"), war("unknown mediaType, set to default: 0"), manager(),
          did("getPlayMode(null, 0)")}},
        {5, "storagemedia.media.getinfo", "getMediaFileInfo", false,
         missing(readString("dirpath"), "unknown path, set cd up!!!")},
        {6, "storagemedia.group.musicorphoto", "enterGroupFolder", false,
         missing(readString("channelId"), "unknown channelId")},
        {7, "storagemedia.group.get.fileinfo", "getGroupListInfo", false, missing(readString("keystr"), "unknown Key Str")},
        {8, "storagemedia.kiro.group.get.fileinfo", "kiroGetGroupListInfo", false,
         missing(readString("keystr"), "unknown Key Str")},
        {9, "storagemedia.group.get.superdemo.fileinfo", "getSuperdemoGroupListInfo", true, {}},
        {10,
         "storagemedia.kiro.media.playfile",
         "kiroPlayMediaFile",
         false,
         {readString("dirpath"), dbg("dirpath :"), readUInt("index"), err("unknown file index")}},
        {11,
         "storagemedia.media.playfile",
         "playMediaFile",
         false,
         {readString("dirpath"), dbg("dirpath :"), readUInt("index"), err("unknown file index")}},
        {12, "storagemedia.media.stopfile", "stopMediaFile", false, missing(readUInt("type"), "unknown File Type")},
        {13, "storagemedia.button.playOrpause", "onPlayPauseButton", false, missing(readUInt("type"), "unknown File Type")},
        {14, "storagemedia.button.prev", "onPrevButton", false, missing(readUInt("type"), "unknown File Type")},
        {15, "storagemedia.button.next", "onNextButton", false, missing(readUInt("type"), "unknown File Type")},
        {16, "storagemedia.button.fastforward", "onFastForwardButton", false,
         missing(readUInt("type"), "unknown File Type")},
        {17, "storagemedia.button.fastrewind", "onFastRewindButton", false, missing(readUInt("type"), "unknown File Type")},
        {18, "storagemedia.close.mmbroswer", "closeMMBroswer", true, statusCall("closeAllMMPlayer(false)")},
        {19, "storagemedia.folder.getcuroptions", "getCurAllOptions", true, statusCall("getCurAllOptions(null)")},
        {20,
         "storagemedia.video.resumeable",
         "isVideoFileResumeable",
         false,
         {readString("dirpath"), war("unknown file dirpath"), dbg("dirpath :"), readUInt("index"),
          err("unknown file index")}},
        {21, "storagemedia.option.set", "setOptions", false, missing(readString("option"), "unknown option")},
        {22, "storagemedia.substitle.option.set", "SubtitlesetOptions", false,
         missing(readString("option"), "unknown option")},
        {23, "storagemedia.substitle.switch", "optSubtitleStatusSwitch", false,
         missing(readInt("value"), "unknown option value")},
        {24, "storagemedia.photo.sort", "photosort", false, missing(readInt("type"), "unknown sort type")},
        {25, "storagemedia.get.playlistfile", "getPlayListFile", false, missing(readString("dirpath"), "unknown path")},
        {26, "storagemedia.start.thumbnail", "startThumbnail", false, missing(readString("channelId"), "unknown channelId")},
        {27, "storagemedia.stop.thumbnail", "stopThumbnail", true, statusCall("stopThumbnail()")},
        {28,
         "storagemedia.stop.backgroundmusic",
         "stopBackGroundMusic",
         true,
         {manager(), did("stopBackGroundMusicFile(0u)"), dbg("curIdx:0")}},
        {29, "storagemedia.folder.appendplaylistandplay", "folderAppendPlayListAndPlay", true, {}},
        {30, "storagemedia.video.pic.set", "VideoPicSizeSet", false,
         missing(readInt("value"), "unknown videopicsize option")},
        {31,
         "storagemedia.video.pic.get",
         "VideoPicSizeGet",
         true,
         {manager(), did("videoPicSizeGet(0)"), dbg("Videopicsize:0")}},
        {32, "storagemedia.kiro.repeat.set", "kiroRepeatModeSet", false, missing(readInt("mode"), "unknown mode")},
        {33, "storagemedia.photo.rotate", "photoRotateSet", false, missing(readBool("rotate"), "unknown rotate option")},
        {34,
         "storagemedia.media.metadata",
         "getMediaMetadata",
         true,
         {manager(), did(R"(getMediaMetadata("", "", "", "", 4))"),
          dbg("MetaData :\r\n title:\r\nsize:\r\ndate:\r\ncodec:\r\n")}},
        {35, "storagemedia.dlna.entermmbroswer", "dlnaEnterMmBrowser", true, statusCall("enterMmBrowser(null, 1)")},
        {36, "storagemedia.get.device.usage", "getDeviceUsage", false, missing(readString("path"), "unknown Path")},
        {37, "storagemedia.play.playlistfile", "playPlayListFile", false,
         missing(readString("lstfile"), "unknown file lstfile")},
        {38, "storagemedia.set.itemperpage", "setItemNumPerPage", false, missing(readInt("number"), "unknown number")},
        {39, "storagemedia.get.pagefiles", "getOnePageFiles", false, missing(readInt("pageid"), "unknown pageid")},
        {40, "storagemedia.dmr.playfile", "dmrPlayFile", false, missing(readInt("type"), "unknown type")},
        {41, "storagemedia.clear.mediamap", "clearMediaMap", false, missing(readString("dirpath"), "unknown dirpath")},
        {42,
         "storagemedia.check.usb.device",
         "isUsbDevicePlugIn",
         true,
         {did(R"(opendir("/proc/scsi/usb-storage"))"), dbg("USB DEVICE is Not-Plug-In")}},
        {43, "storagemedia.set.player.mode", "setPlayerMode", false, missing(readUInt("type"), "unknown File Type")},
        {44,
         "storagemedia.get.browser.codec",
         "getbrowsercodec",
         false,
         {printed("enter CStorageMediaPlugin susscess 2521\nenter CStorageMediaPlugin susscess 2527\n"), readUInt("type"),
          err("unknown File Type")}},
        {45, "storagemedia.video.clear.resume", "videoClearResume", true, statusCall("videoClearResume()")},
    };
    return all;
}

class EveryCommand : public testing::TestWithParam<DispatchedCommand> {
protected:
    FakePlatform platform;
};

TEST_P(EveryCommand, Executed_RunsItsOwnHandler)
{
    const DispatchedCommand& command = GetParam();
    for (int level = 0; level <= 4; ++level) {
        platform.logLevel = 4;
        Plugin_Load();
        platform.takeJournal();
        platform.logLevel = level;
        Json::Value request;
        Json::Value reply;
        request["CmdHash"] = tvfirmware::str2hashid(command.name);
        EXPECT_EQ(Plugin_Execute(command.name, &request, &reply), command.result);
        Journal expected = {did("log FRAMEWORK 0 storageMedia plugin Plugin_Execute: " + std::string(command.name))};
        expected.insert(expected.end(), command.journal.begin(), command.journal.end());
        EXPECT_EQ(normalised(platform.takeJournal()), render(expected, command.function, level));
        Plugin_Unload();
    }
}

TEST_P(EveryCommand, Row_HasItsIndexAndName)
{
    const DispatchedCommand& command = GetParam();
    const CommandRow& row = gCmdStringMap[static_cast<std::size_t>(command.index)];
    EXPECT_EQ(row.index, command.index);
    EXPECT_STREQ(row.name, command.name);
    EXPECT_EQ(testsupport::describedCommand(command.function)["name"].asString(), command.name);
}

INSTANTIATE_TEST_SUITE_P(Table, EveryCommand, testing::ValuesIn(commands()), [](const auto& row) {
    std::string name = row.param.name;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
});

TEST(CommandTable, LastRow_StandsForNoCommand)
{
    EXPECT_EQ(commands().size(), kCommandCount);
    EXPECT_EQ(gCmdStringMap.size(), 47U);
    EXPECT_EQ(gCmdStringMap.back().index, 46);
    EXPECT_STREQ(gCmdStringMap.back().name, "");
    EXPECT_EQ(gCmdStringMap.back().handler, nullptr);
}

TEST(CommandTable, Index_HoldsEveryNameOnceHoweverOftenItIsGenerated)
{
    Plugin_Cmd_Hash_Gen();
    Plugin_Cmd_Hash_Gen();
    EXPECT_EQ(gCmdListIndexMap.size(), 47U);
    for (const CommandRow& row : gCmdStringMap) {
        EXPECT_EQ(gCmdListIndexMap.at(tvfirmware::str2hashid(row.name)), row.index) << row.name;
    }
}

TEST(CommandTable, Index_KeepsAnEntryThatIsThereAlready)
{
    const unsigned int hash = tvfirmware::str2hashid("storagemedia.folder.chgdir");
    gCmdListIndexMap[hash] = 7;
    Plugin_Cmd_Hash_Gen();
    EXPECT_EQ(gCmdListIndexMap.at(hash), 7);
    gCmdListIndexMap[hash] = 0;
}

} // namespace
