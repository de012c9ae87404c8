#pragma once

// Made from protocol/storagemedia.json by tools/protocol: change it there.

#include <array>

namespace protocol {

struct CommandDescription {
    const char* name;
    const char* purpose;
    const char* answer; ///< the notification that ends its answer; null: it answers at once
};

struct NotificationDescription {
    const char* name;
    bool isBroadcast; ///< comes from the plugin; otherwise on a request's channel
    bool isFromEvent; ///< an event of the platform leads to it
};

// clang-format off

/// Every command, in the order of their numbers.
inline constexpr std::array<CommandDescription, 46> kCommands = {{
    {"storagemedia.folder.chgdir", "Starts changing to another directory. Its entries come with the completion.", "storagemedia.folder.chgdir.complete"},
    {"storagemedia.folder.user.cancel", "Stops the folder operation that runs.", nullptr},
    {"storagemedia.video.searchFiles", "Starts searching a directory and all below it for videos. Also sets the page size.", "storagemedia.video.searchFiles.complete"},
    {"storagemedia.media.entermmbroswer", "Opens the media browser.", nullptr},
    {"storagemedia.get.play.mode", "Reads the play mode of a kind of media.", nullptr},
    {"storagemedia.media.getinfo", "Describes one media file.", nullptr},
    {"storagemedia.group.musicorphoto", "Starts grouping the music or photos under a directory.", "storagemedia.group.musicorphoto.complete"},
    {"storagemedia.group.get.fileinfo", "Lists the files of one group. Also sets the page size.", nullptr},
    {"storagemedia.kiro.group.get.fileinfo", "Lists the files of one group with duration and artist. Also sets the page size.", nullptr},
    {"storagemedia.group.get.superdemo.fileinfo", "Lists the store demonstration, which is always empty.", nullptr},
    {"storagemedia.kiro.media.playfile", "Plays a file, for the second browser.", nullptr},
    {"storagemedia.media.playfile", "Plays a file.", nullptr},
    {"storagemedia.media.stopfile", "Stops playback.", nullptr},
    {"storagemedia.button.playOrpause", "The play/pause key.", nullptr},
    {"storagemedia.button.prev", "The previous key.", nullptr},
    {"storagemedia.button.next", "The next key.", nullptr},
    {"storagemedia.button.fastforward", "The fast-forward key.", nullptr},
    {"storagemedia.button.fastrewind", "The fast-rewind key.", nullptr},
    {"storagemedia.close.mmbroswer", "Closes the media browser: every player stops.", nullptr},
    {"storagemedia.folder.getcuroptions", "Reads all current playback options.", nullptr},
    {"storagemedia.video.resumeable", "Asks whether the file that a play command would start has a remembered position.", nullptr},
    {"storagemedia.option.set", "Sets a playback option.", nullptr},
    {"storagemedia.substitle.option.set", "Sets a subtitle option.", nullptr},
    {"storagemedia.substitle.switch", "Switches subtitles.", nullptr},
    {"storagemedia.photo.sort", "Sorts the photos of the current folder.", nullptr},
    {"storagemedia.get.playlistfile", "Lists the playlist files under a directory.", nullptr},
    {"storagemedia.start.thumbnail", "Starts making thumbnails of one file or of a range of the current folder.", "startThumbnail.complete"},
    {"storagemedia.stop.thumbnail", "Stops the thumbnail work.", nullptr},
    {"storagemedia.stop.backgroundmusic", "Stops music that plays behind photos.", nullptr},
    {"storagemedia.folder.appendplaylistandplay", "Acknowledged, without effect.", nullptr},
    {"storagemedia.video.pic.set", "Sets the picture size of video.", nullptr},
    {"storagemedia.video.pic.get", "Reads the picture size of video.", nullptr},
    {"storagemedia.kiro.repeat.set", "Sets the repeat mode.", nullptr},
    {"storagemedia.photo.rotate", "Turns the photo on screen by a quarter.", nullptr},
    {"storagemedia.media.metadata", "Describes the medium that plays.", nullptr},
    {"storagemedia.dlna.entermmbroswer", "Opens the media browser on DLNA servers.", nullptr},
    {"storagemedia.get.device.usage", "Tells how full a device is, in binary units.", nullptr},
    {"storagemedia.play.playlistfile", "Checked and acknowledged, without effect.", nullptr},
    {"storagemedia.set.itemperpage", "Sets the page size, from the next directory change on.", nullptr},
    {"storagemedia.get.pagefiles", "Reads one page of a list.", nullptr},
    {"storagemedia.dmr.playfile", "Prepares playback that a DLNA controller asked for.", nullptr},
    {"storagemedia.clear.mediamap", "Drops what has been indexed under a directory.", nullptr},
    {"storagemedia.check.usb.device", "Asks whether a USB storage device is attached.", nullptr},
    {"storagemedia.set.player.mode", "Sets the order of play.", nullptr},
    {"storagemedia.get.browser.codec", "Describes the codecs of the medium that plays.", nullptr},
    {"storagemedia.video.clear.resume", "Forgets the remembered positions of video.", nullptr},
}};

/// Every notification.
inline constexpr std::array<NotificationDescription, 39> kNotifications = {{
    {"storagemedia.usb.plugin", true, true},
    {"storagemedia.usb.mount", true, true},
    {"storagemedia.usb.unmount", true, true},
    {"storagemedia.dlna.mount", true, true},
    {"storagemedia.dlna.unmount", true, true},
    {"storagemedia.folder.chgdir.complete", false, true},
    {"storagemedia.video.searchFiles.complete", false, true},
    {"storagemedia.video.searchFiles.fragment", false, true},
    {"startThumbnail.fragment", false, true},
    {"startThumbnail.complete", false, true},
    {"storagemedia.group.musicorphoto.complete", false, true},
    {"storagemedia.media.loadsuccess", true, true},
    {"storagemedia.media.curplayspeed", true, true},
    {"storagemedia.media.loadfailed", true, true},
    {"storagemedia.audio.notsupport", true, true},
    {"storagemedia.video.music.playend", true, true},
    {"storagemedia.media.notsupport", true, true},
    {"storagemedia.media.infoupdate", true, true},
    {"storagemedia.movie.stopsucc", true, true},
    {"storagemedia.media.playfailed", true, true},
    {"storagemedia.music.stopsucc", true, true},
    {"storagemedia.media.photo.loadsuccess", true, true},
    {"storagemedia.photo.infoupdate", true, true},
    {"storagemedia.photo.playend", true, true},
    {"storagemedia.photo.stopsucc", true, true},
    {"storagemedia.media.process", true, true},
    {"storagemedia.media.titleinfo", true, true},
    {"storagemedia.dlna.dmr.seturl", true, true},
    {"storagemedia.dlna.playfiletype", true, true},
    {"storagemedia.dlna.playend", true, true},
    {"storagemedia.dlna.dmrpause", true, true},
    {"storagemedia.dlna.stopfile", true, true},
    {"storagemedia.dlna.setseek", true, true},
    {"storagemedia.dlna.dmrmute", true, true},
    {"storagemedia.dlna.adjustvolume", true, true},
    {"storagemedia.fastboot.superdemo", true, true},
    {"storagemedia.set.usb.source", true, true},
    {"storage.fileScan.complete", false, false},
    {"storage.media.thumbnail.complete", false, false},
}};

// clang-format on

} // namespace protocol
