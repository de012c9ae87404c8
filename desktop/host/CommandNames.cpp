#include "desktop/host/CommandNames.h"

#include <algorithm>

namespace desktop {

const std::array<CommandName, kCommandNameCount> kCommandNames = {{
    {"storagemedia.folder.chgdir", "read a folder; its entries come with storagemedia.folder.chgdir.complete"},
    {"storagemedia.folder.user.cancel", "stop the folder operation that runs"},
    {"storagemedia.video.searchFiles", "search a folder and all below it for videos"},
    {"storagemedia.media.entermmbroswer", "enter the media browser; tells the devices"},
    {"storagemedia.get.play.mode", "tell the play mode"},
    {"storagemedia.media.getinfo", "describe one media file"},
    {"storagemedia.group.musicorphoto", "group the music or photos of a folder"},
    {"storagemedia.group.get.fileinfo", "list the files of a group"},
    {"storagemedia.kiro.group.get.fileinfo", "list the files of a group with their media data"},
    {"storagemedia.group.get.superdemo.fileinfo", "list the files of a group for the demonstration"},
    {"storagemedia.kiro.media.playfile", "play a file of the second browser"},
    {"storagemedia.media.playfile", "play a file"},
    {"storagemedia.media.stopfile", "stop playing"},
    {"storagemedia.button.playOrpause", "play or pause"},
    {"storagemedia.button.prev", "go to the previous file"},
    {"storagemedia.button.next", "go to the next file"},
    {"storagemedia.button.fastforward", "wind forward"},
    {"storagemedia.button.fastrewind", "wind backward"},
    {"storagemedia.close.mmbroswer", "leave the media browser; stops every player"},
    {"storagemedia.folder.getcuroptions", "tell the options of what plays"},
    {"storagemedia.video.resumeable", "tell whether a video can go on where it was left"},
    {"storagemedia.option.set", "set an option of what plays"},
    {"storagemedia.substitle.option.set", "set an option of the subtitles"},
    {"storagemedia.substitle.switch", "switch the subtitles on or off"},
    {"storagemedia.photo.sort", "sort the photos of the current folder"},
    {"storagemedia.get.playlistfile", "list the playlists below a folder"},
    {"storagemedia.start.thumbnail", "make small pictures of files"},
    {"storagemedia.stop.thumbnail", "stop making small pictures"},
    {"storagemedia.stop.backgroundmusic", "stop the music behind photos"},
    {"storagemedia.folder.appendplaylistandplay", "append files to the playlist and play"},
    {"storagemedia.video.pic.set", "set the picture size of a video"},
    {"storagemedia.video.pic.get", "tell the picture size of a video"},
    {"storagemedia.kiro.repeat.set", "set the repeat mode of the second browser"},
    {"storagemedia.photo.rotate", "turn the photo that is shown"},
    {"storagemedia.media.metadata", "tell the metadata of what plays"},
    {"storagemedia.dlna.entermmbroswer", "enter the media browser on media servers"},
    {"storagemedia.get.device.usage", "tell how full a device is"},
    {"storagemedia.play.playlistfile", "play a playlist"},
    {"storagemedia.set.itemperpage", "set how many entries make a page"},
    {"storagemedia.get.pagefiles", "list one page of a folder"},
    {"storagemedia.dmr.playfile", "play what a renderer's controller asked for"},
    {"storagemedia.clear.mediamap", "forget what is known of a folder and all below it"},
    {"storagemedia.check.usb.device", "tell whether a USB mass-storage device is attached"},
    {"storagemedia.set.player.mode", "set the order in which files play"},
    {"storagemedia.get.browser.codec", "tell the codecs of what plays"},
    {"storagemedia.video.clear.resume", "forget where videos were left"},
}};

bool isCommandName(std::string_view name)
{
    return std::any_of(kCommandNames.begin(), kCommandNames.end(),
                       [name](const CommandName& command) { return command.name == name; });
}

} // namespace desktop
