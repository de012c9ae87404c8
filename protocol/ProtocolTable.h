#pragma once

// Made from protocol/storagemedia.json by tools/protocol: change it there.

#include <array>
#include <cstddef>

namespace protocol {

/// A key that a command reads of its request.
struct RequestKey {
    const char* name;
    const char* type;
    const char* need; ///< whether it is required, or its default
    const char* meaning;
};

/// Some of the keys in a row, for a range-based for.
struct RequestKeys {
    const RequestKey* first;
    std::size_t count;
    const RequestKey* begin() const { return first; }
    const RequestKey* end() const { return first + count; }
};

struct CommandDescription {
    const char* name;
    const char* purpose;
    const char* answer; ///< the notification that ends its answer; null: it answers at once
    RequestKeys request;
};

struct NotificationDescription {
    const char* name;
    bool isBroadcast; ///< comes from the plugin; otherwise on a request's channel
    bool isFromEvent; ///< an event of the platform leads to it
};

// clang-format off

inline constexpr std::array<RequestKey, 77> kRequestKeys = {{
    {"channelId", "string", "required, not empty", "whom the completion is published to"},
    {"reqId", "string", "required, not empty", "comes back in the completion"},
    {"number", "integer", "default 9", "entries to a page from now on"},
    {"dirpath", "string", "default \"\"", "the directory; numbers and booleans are taken as text"},
    {"channelId", "string", "required, not empty", "whom the results are published to; kept even if the command fails later"},
    {"reqId", "string", "required", "comes back in the results"},
    {"number", "integer", "default the current page size", "entries to a page from now on"},
    {"dirpath", "string", "required", "where to search"},
    {"srctype", "integer", "default 0", "0: USB, any other value: DLNA"},
    {"mediaType", "integer", "default 0", "kind of media"},
    {"dirpath", "string", "required", "the file's full path"},
    {"channelId", "string", "required, not empty", "whom the keys are published to; kept even if the command fails later"},
    {"reqId", "string", "required", "comes back with the keys"},
    {"Group", "integer", "required", "0 none, 1 music, 2 genre, 3 artist, 4 album, 5 date, 6 and 7 month, 8 year; 9 to 11 are the platform's"},
    {"dirpath", "string", "required, not empty", "where to group"},
    {"keystr", "string", "required, not empty", "the group's key"},
    {"number", "integer", "default 9", "entries to a page from now on"},
    {"asc", "integer", "required", "-1: no direction, 0: descending, any other value: ascending"},
    {"keystr", "string", "required, not empty", "the group's key"},
    {"number", "integer", "default 9", "entries to a page from now on"},
    {"dirpath", "string", "default \"\"", "directory or playlist to play from"},
    {"index", "unsigned integer", "required", "which file, from 0"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"playall", "boolean", "required", "go on with the next file"},
    {"resume", "boolean", "default false", "from the remembered position"},
    {"dirpath", "string", "default \"\"", "directory or playlist to play from"},
    {"index", "unsigned integer", "required", "which file, from 0"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"playall", "boolean", "required", "go on with the next file"},
    {"resume", "boolean", "default false", "from the remembered position"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"play", "boolean", "required", "true: play, false: pause"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"type", "unsigned integer", "required", "4 video, 5 music; photos cannot be wound"},
    {"type", "unsigned integer", "required", "4 video, 5 music; photos cannot be wound"},
    {"dirpath", "string", "default \"\"", "directory or playlist to play from"},
    {"index", "unsigned integer", "required", "which file, from 0"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"playall", "boolean", "required", "as the play command would have it"},
    {"option", "string", "required", "the option's name"},
    {"suboption", "string", "default \"\"", "a part of the option"},
    {"value", "integer", "required", "the new value"},
    {"flags", "integer", "default 0", "the platform's"},
    {"playall", "integer", "default 0", "an integer here, unlike in the play commands"},
    {"option", "string", "required", "the option's name"},
    {"value", "integer", "required", "the new value"},
    {"value", "integer", "required", "the platform's switch value"},
    {"type", "integer", "required", "the platform's sort type"},
    {"order", "integer", "required", "zero or not zero"},
    {"dirpath", "string", "required", "where to look"},
    {"channelId", "string", "required, not empty", "whom the pictures are published to; kept even if the command fails later"},
    {"reqId", "string", "required", "comes back with each picture"},
    {"path", "string", "default \"\"", "the one file; empty: the range"},
    {"type", "integer", "required", "kind of media"},
    {"width", "unsigned integer", "default 240", "pixels, at most"},
    {"height", "unsigned integer", "default 360", "pixels, at most"},
    {"startidx", "unsigned integer", "default 0", "first entry of the range"},
    {"count", "unsigned integer", "default 9", "length of the range"},
    {"value", "integer", "required", "the platform's size value"},
    {"mode", "integer", "required", "the platform's repeat mode"},
    {"rotate", "boolean", "required", "true: to the right, false: to the left"},
    {"path", "string", "required, not empty", "a path on the device"},
    {"lstfile", "string", "required", "the playlist"},
    {"file", "string", "required", "the file in it"},
    {"number", "integer", "required", "entries to a page; not checked"},
    {"pageid", "integer", "required", "which page, from 0"},
    {"type", "integer", "required", "0: a directory by its path, 1: the current list, 2: a group by its key"},
    {"keystr", "string", "default \"\"; required when \"type\" is 2", "the group's key"},
    {"dirpath", "string", "default \"\"", "the directory, for type 0"},
    {"type", "integer", "required", "kind of media; not checked"},
    {"dirpath", "string", "required", "the directory"},
    {"type", "unsigned integer", "required", "3 photo, 4 video, 5 music"},
    {"mode", "unsigned integer", "required", "the platform's player mode; not checked"},
    {"type", "unsigned integer", "required", "kind of media; not checked"},
    {"", "", "", ""},
}};

/// Every command, in the order of their numbers.
inline constexpr std::array<CommandDescription, 46> kCommands = {{
    {"storagemedia.folder.chgdir", "Starts changing to another directory. Its entries come with the completion.", "storagemedia.folder.chgdir.complete", {&kRequestKeys[0], 4}},
    {"storagemedia.folder.user.cancel", "Stops the folder operation that runs.", nullptr, {&kRequestKeys[4], 0}},
    {"storagemedia.video.searchFiles", "Starts searching a directory and all below it for videos. Also sets the page size.", "storagemedia.video.searchFiles.complete", {&kRequestKeys[4], 4}},
    {"storagemedia.media.entermmbroswer", "Opens the media browser.", nullptr, {&kRequestKeys[8], 1}},
    {"storagemedia.get.play.mode", "Reads the play mode of a kind of media.", nullptr, {&kRequestKeys[9], 1}},
    {"storagemedia.media.getinfo", "Describes one media file.", nullptr, {&kRequestKeys[10], 1}},
    {"storagemedia.group.musicorphoto", "Starts grouping the music or photos under a directory.", "storagemedia.group.musicorphoto.complete", {&kRequestKeys[11], 4}},
    {"storagemedia.group.get.fileinfo", "Lists the files of one group. Also sets the page size.", nullptr, {&kRequestKeys[15], 3}},
    {"storagemedia.kiro.group.get.fileinfo", "Lists the files of one group with duration and artist. Also sets the page size.", nullptr, {&kRequestKeys[18], 2}},
    {"storagemedia.group.get.superdemo.fileinfo", "Lists the store demonstration, which is always empty.", nullptr, {&kRequestKeys[20], 0}},
    {"storagemedia.kiro.media.playfile", "Plays a file, for the second browser.", nullptr, {&kRequestKeys[20], 5}},
    {"storagemedia.media.playfile", "Plays a file.", nullptr, {&kRequestKeys[25], 5}},
    {"storagemedia.media.stopfile", "Stops playback.", nullptr, {&kRequestKeys[30], 1}},
    {"storagemedia.button.playOrpause", "The play/pause key.", nullptr, {&kRequestKeys[31], 2}},
    {"storagemedia.button.prev", "The previous key.", nullptr, {&kRequestKeys[33], 1}},
    {"storagemedia.button.next", "The next key.", nullptr, {&kRequestKeys[34], 1}},
    {"storagemedia.button.fastforward", "The fast-forward key.", nullptr, {&kRequestKeys[35], 1}},
    {"storagemedia.button.fastrewind", "The fast-rewind key.", nullptr, {&kRequestKeys[36], 1}},
    {"storagemedia.close.mmbroswer", "Closes the media browser: every player stops.", nullptr, {&kRequestKeys[37], 0}},
    {"storagemedia.folder.getcuroptions", "Reads all current playback options.", nullptr, {&kRequestKeys[37], 0}},
    {"storagemedia.video.resumeable", "Asks whether the file that a play command would start has a remembered position.", nullptr, {&kRequestKeys[37], 4}},
    {"storagemedia.option.set", "Sets a playback option.", nullptr, {&kRequestKeys[41], 5}},
    {"storagemedia.substitle.option.set", "Sets a subtitle option.", nullptr, {&kRequestKeys[46], 2}},
    {"storagemedia.substitle.switch", "Switches subtitles.", nullptr, {&kRequestKeys[48], 1}},
    {"storagemedia.photo.sort", "Sorts the photos of the current folder.", nullptr, {&kRequestKeys[49], 2}},
    {"storagemedia.get.playlistfile", "Lists the playlist files under a directory.", nullptr, {&kRequestKeys[51], 1}},
    {"storagemedia.start.thumbnail", "Starts making thumbnails of one file or of a range of the current folder.", "startThumbnail.complete", {&kRequestKeys[52], 8}},
    {"storagemedia.stop.thumbnail", "Stops the thumbnail work.", nullptr, {&kRequestKeys[60], 0}},
    {"storagemedia.stop.backgroundmusic", "Stops music that plays behind photos.", nullptr, {&kRequestKeys[60], 0}},
    {"storagemedia.folder.appendplaylistandplay", "Acknowledged, without effect.", nullptr, {&kRequestKeys[60], 0}},
    {"storagemedia.video.pic.set", "Sets the picture size of video.", nullptr, {&kRequestKeys[60], 1}},
    {"storagemedia.video.pic.get", "Reads the picture size of video.", nullptr, {&kRequestKeys[61], 0}},
    {"storagemedia.kiro.repeat.set", "Sets the repeat mode.", nullptr, {&kRequestKeys[61], 1}},
    {"storagemedia.photo.rotate", "Turns the photo on screen by a quarter.", nullptr, {&kRequestKeys[62], 1}},
    {"storagemedia.media.metadata", "Describes the medium that plays.", nullptr, {&kRequestKeys[63], 0}},
    {"storagemedia.dlna.entermmbroswer", "Opens the media browser on DLNA servers.", nullptr, {&kRequestKeys[63], 0}},
    {"storagemedia.get.device.usage", "Tells how full a device is, in binary units.", nullptr, {&kRequestKeys[63], 1}},
    {"storagemedia.play.playlistfile", "Checked and acknowledged, without effect.", nullptr, {&kRequestKeys[64], 2}},
    {"storagemedia.set.itemperpage", "Sets the page size, from the next directory change on.", nullptr, {&kRequestKeys[66], 1}},
    {"storagemedia.get.pagefiles", "Reads one page of a list.", nullptr, {&kRequestKeys[67], 4}},
    {"storagemedia.dmr.playfile", "Prepares playback that a DLNA controller asked for.", nullptr, {&kRequestKeys[71], 1}},
    {"storagemedia.clear.mediamap", "Drops what has been indexed under a directory.", nullptr, {&kRequestKeys[72], 1}},
    {"storagemedia.check.usb.device", "Asks whether a USB storage device is attached.", nullptr, {&kRequestKeys[73], 0}},
    {"storagemedia.set.player.mode", "Sets the order of play.", nullptr, {&kRequestKeys[73], 2}},
    {"storagemedia.get.browser.codec", "Describes the codecs of the medium that plays.", nullptr, {&kRequestKeys[75], 1}},
    {"storagemedia.video.clear.resume", "Forgets the remembered positions of video.", nullptr, {&kRequestKeys[76], 0}},
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
