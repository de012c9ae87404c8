#include "plugin/CommandTable.h"

#include "plugin/CommandHash.h"

using Plugin = tvfirmware::CStorageMediaPlugin;

constexpr std::array<CommandRow, kCommandCount + 1> gCmdStringMap = {{
    {0, "storagemedia.folder.chgdir", &Plugin::chgdir},
    {1, "storagemedia.folder.user.cancel", &Plugin::userCancel},
    {2, "storagemedia.video.searchFiles", &Plugin::searchFiles},
    {3, "storagemedia.media.entermmbroswer", &Plugin::enterMmBrowser},
    {4, "storagemedia.get.play.mode", &Plugin::getPlayMode},
    {5, "storagemedia.media.getinfo", &Plugin::getMediaFileInfo},
    {6, "storagemedia.group.musicorphoto", &Plugin::enterGroupFolder},
    {7, "storagemedia.group.get.fileinfo", &Plugin::getGroupListInfo},
    {8, "storagemedia.kiro.group.get.fileinfo", &Plugin::kiroGetGroupListInfo},
    {9, "storagemedia.group.get.superdemo.fileinfo", &Plugin::getSuperdemoGroupListInfo},
    {10, "storagemedia.kiro.media.playfile", &Plugin::kiroPlayMediaFile},
    {11, "storagemedia.media.playfile", &Plugin::playMediaFile},
    {12, "storagemedia.media.stopfile", &Plugin::stopMediaFile},
    {13, "storagemedia.button.playOrpause", &Plugin::onPlayPauseButton},
    {14, "storagemedia.button.prev", &Plugin::onPrevButton},
    {15, "storagemedia.button.next", &Plugin::onNextButton},
    {16, "storagemedia.button.fastforward", &Plugin::onFastForwardButton},
    {17, "storagemedia.button.fastrewind", &Plugin::onFastRewindButton},
    {18, "storagemedia.close.mmbroswer", &Plugin::closeMMBroswer},
    {19, "storagemedia.folder.getcuroptions", &Plugin::getCurAllOptions},
    {20, "storagemedia.video.resumeable", &Plugin::isVideoFileResumeable},
    {21, "storagemedia.option.set", &Plugin::setOptions},
    {22, "storagemedia.substitle.option.set", &Plugin::SubtitlesetOptions},
    {23, "storagemedia.substitle.switch", &Plugin::optSubtitleStatusSwitch},
    {24, "storagemedia.photo.sort", &Plugin::photosort},
    {25, "storagemedia.get.playlistfile", &Plugin::getPlayListFile},
    {26, "storagemedia.start.thumbnail", &Plugin::startThumbnail},
    {27, "storagemedia.stop.thumbnail", &Plugin::stopThumbnail},
    {28, "storagemedia.stop.backgroundmusic", &Plugin::stopBackGroundMusic},
    {29, "storagemedia.folder.appendplaylistandplay", &Plugin::folderAppendPlayListAndPlay},
    {30, "storagemedia.video.pic.set", &Plugin::VideoPicSizeSet},
    {31, "storagemedia.video.pic.get", &Plugin::VideoPicSizeGet},
    {32, "storagemedia.kiro.repeat.set", &Plugin::kiroRepeatModeSet},
    {33, "storagemedia.photo.rotate", &Plugin::photoRotateSet},
    {34, "storagemedia.media.metadata", &Plugin::getMediaMetadata},
    {35, "storagemedia.dlna.entermmbroswer", &Plugin::dlnaEnterMmBrowser},
    {36, "storagemedia.get.device.usage", &Plugin::getDeviceUsage},
    {37, "storagemedia.play.playlistfile", &Plugin::playPlayListFile},
    {38, "storagemedia.set.itemperpage", &Plugin::setItemNumPerPage},
    {39, "storagemedia.get.pagefiles", &Plugin::getOnePageFiles},
    {40, "storagemedia.dmr.playfile", &Plugin::dmrPlayFile},
    {41, "storagemedia.clear.mediamap", &Plugin::clearMediaMap},
    {42, "storagemedia.check.usb.device", &Plugin::isUsbDevicePlugIn},
    {43, "storagemedia.set.player.mode", &Plugin::setPlayerMode},
    {44, "storagemedia.get.browser.codec", &Plugin::getbrowsercodec},
    {45, "storagemedia.video.clear.resume", &Plugin::videoClearResume},
    {46, "", nullptr},
}};

namespace {

constexpr bool rowsAreInOrder()
{
    for (std::size_t i = 0; i < gCmdStringMap.size(); ++i) {
        if (gCmdStringMap[i].index != static_cast<int>(i)) {
            return false;
        }
    }
    return true;
}

constexpr bool hashesAreUnique()
{
    for (std::size_t i = 0; i < gCmdStringMap.size(); ++i) {
        for (std::size_t j = i + 1; j < gCmdStringMap.size(); ++j) {
            if (tvfirmware::commandHash(gCmdStringMap[i].name) == tvfirmware::commandHash(gCmdStringMap[j].name)) {
                return false;
            }
        }
    }
    return true;
}

static_assert(rowsAreInOrder());
static_assert(hashesAreUnique());

} // namespace

std::map<unsigned int, int> gCmdListIndexMap;

void Plugin_Cmd_Hash_Gen()
{
    for (const CommandRow& row : gCmdStringMap) {
        gCmdListIndexMap.insert({tvfirmware::str2hashid(row.name), row.index});
    }
}

namespace tvfirmware {

__attribute__((visibility("default"))) unsigned int str2hashid(const char* s)
{
    return commandHash(s);
}

} // namespace tvfirmware
