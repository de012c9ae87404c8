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
    const char* answer;  ///< the notification that ends its answer; null: it answers at once
    const char* desktop; ///< what it means on the desktop, a paragraph to a line; null: nothing besides
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
    {"storagemedia.folder.chgdir", "Starts changing to another directory. Its entries come with the completion.", "storagemedia.folder.chgdir.complete", nullptr, {&kRequestKeys[0], 4}},
    {"storagemedia.folder.user.cancel", "Stops the folder operation that runs.", nullptr, nullptr, {&kRequestKeys[4], 0}},
    {"storagemedia.video.searchFiles", "Starts searching a directory and all below it for videos. Also sets the page size.", "storagemedia.video.searchFiles.complete", nullptr, {&kRequestKeys[4], 4}},
    {"storagemedia.media.entermmbroswer", "Opens the media browser.", nullptr, nullptr, {&kRequestKeys[8], 1}},
    {"storagemedia.get.play.mode", "Reads the play mode of a kind of media.", nullptr, "For a \"mediaType\" of 3, 4 or 5 {\"mode\": m}; for 0 all of them, {\"photo\": m, \"video\": m, \"music\": m}.", {&kRequestKeys[9], 1}},
    {"storagemedia.media.getinfo", "Describes one media file.", nullptr, nullptr, {&kRequestKeys[10], 1}},
    {"storagemedia.group.musicorphoto", "Starts grouping the music or photos under a directory.", "storagemedia.group.musicorphoto.complete", nullptr, {&kRequestKeys[11], 4}},
    {"storagemedia.group.get.fileinfo", "Lists the files of one group. Also sets the page size.", nullptr, nullptr, {&kRequestKeys[15], 3}},
    {"storagemedia.kiro.group.get.fileinfo", "Lists the files of one group with duration and artist. Also sets the page size.", nullptr, nullptr, {&kRequestKeys[18], 2}},
    {"storagemedia.group.get.superdemo.fileinfo", "Lists the store demonstration, which is always empty.", nullptr, nullptr, {&kRequestKeys[20], 0}},
    {"storagemedia.kiro.media.playfile", "Plays a file, for the second browser.", nullptr, "As \"storagemedia.media.playfile\". Its playback raises the events of the second browser (23, 26, 31, 32), which lead to the same notifications.", {&kRequestKeys[20], 5}},
    {"storagemedia.media.playfile", "Plays a file.", nullptr, "What plays is named as \"Lists\" in the protocol's reference says. \"playall\" goes on through the entries of the type, as the player mode says; without it playback ends after the one.\n\"resume\" begins a video where it was left. The reply comes before the file is opened: whether it plays is told by \"storagemedia.media.loadsuccess\" or \"storagemedia.media.loadfailed\".", {&kRequestKeys[25], 5}},
    {"storagemedia.media.stopfile", "Stops playback.", nullptr, "Fails when nothing of that type plays. A video's position is remembered.", {&kRequestKeys[30], 1}},
    {"storagemedia.button.playOrpause", "The play/pause key.", nullptr, "Play also ends winding. Fails while nothing of that type plays.", {&kRequestKeys[31], 2}},
    {"storagemedia.button.prev", "The previous key.", nullptr, "Plays the entry before; while shuffling, the one that played before. Fails, and plays on, when there is none.", {&kRequestKeys[33], 1}},
    {"storagemedia.button.next", "The next key.", nullptr, "Plays the entry that follows by the player mode; when one entry is repeated, the next of the list. Fails, and plays on, when there is none.", {&kRequestKeys[34], 1}},
    {"storagemedia.button.fastforward", "The fast-forward key.", nullptr, "Winds 2, 4, 8 and 16 times as fast, one step for each press, and then 2 times again. At the end the medium ends as if it had been played.", {&kRequestKeys[35], 1}},
    {"storagemedia.button.fastrewind", "The fast-rewind key.", nullptr, "Winds back 2, 4, 8 and 16 times as fast, one step for each press, and then 2 times again. At the start the medium plays on from there.", {&kRequestKeys[36], 1}},
    {"storagemedia.close.mmbroswer", "Closes the media browser: every player stops.", nullptr, "Stops all players, the background music too.", {&kRequestKeys[37], 0}},
    {"storagemedia.folder.getcuroptions", "Reads all current playback options.", nullptr, "{\"options\": [...], \"subtitles\": whether they are shown, \"rotation\": of the photo, in degrees}. Each of the \"options\" has \"option\", \"suboption\" and its \"value\"; besides, a range has \"minimum\", \"maximum\" and \"unit\", and all else \"choices\", a list of {\"value\", \"name\"}. The choices of a track are those of the medium that plays, and have \"language\", \"codec\" and \"external\" (a file beside it), too; the option's \"current\" is the track that plays.", {&kRequestKeys[37], 0}},
    {"storagemedia.video.resumeable", "Asks whether the file that a play command would start has a remembered position.", nullptr, "Looks at what is remembered, and at no file. Only videos have positions.", {&kRequestKeys[37], 4}},
    {"storagemedia.option.set", "Sets a playback option.", nullptr, "\"Playback options on the desktop\" in the protocol's reference lists what can be set. \"flags\" and \"playall\" mean nothing.", {&kRequestKeys[41], 5}},
    {"storagemedia.substitle.option.set", "Sets a subtitle option.", nullptr, "Sets the suboptions of \"subtitle\" in \"Playback options on the desktop\" in the protocol's reference: its \"option\" is their \"suboption\".", {&kRequestKeys[46], 2}},
    {"storagemedia.substitle.switch", "Switches subtitles.", nullptr, "0 hides the subtitles and 1 shows them; other values are refused. \"storagemedia.media.titleinfo\" tells them in either case.", {&kRequestKeys[48], 1}},
    {"storagemedia.photo.sort", "Sorts the photos of the current folder.", nullptr, nullptr, {&kRequestKeys[49], 2}},
    {"storagemedia.get.playlistfile", "Lists the playlist files under a directory.", nullptr, nullptr, {&kRequestKeys[51], 1}},
    {"storagemedia.start.thumbnail", "Starts making thumbnails of one file or of a range of the current folder.", "startThumbnail.complete", nullptr, {&kRequestKeys[52], 8}},
    {"storagemedia.stop.thumbnail", "Stops the thumbnail work.", nullptr, nullptr, {&kRequestKeys[60], 0}},
    {"storagemedia.stop.backgroundmusic", "Stops music that plays behind photos.", nullptr, "Fails when no music plays.", {&kRequestKeys[60], 0}},
    {"storagemedia.folder.appendplaylistandplay", "Acknowledged, without effect.", nullptr, nullptr, {&kRequestKeys[60], 0}},
    {"storagemedia.video.pic.set", "Sets the picture size of video.", nullptr, "The values are those of \"video\", \"picsize\" in \"Playback options on the desktop\" in the protocol's reference.", {&kRequestKeys[60], 1}},
    {"storagemedia.video.pic.get", "Reads the picture size of video.", nullptr, "The values are those of \"video\", \"picsize\" in \"Playback options on the desktop\" in the protocol's reference.", {&kRequestKeys[61], 0}},
    {"storagemedia.kiro.repeat.set", "Sets the repeat mode.", nullptr, "0 repeats nothing, 1 all, 2 one; for video and music. Other values are refused.", {&kRequestKeys[61], 1}},
    {"storagemedia.photo.rotate", "Turns the photo on screen by a quarter.", nullptr, "Turns the photo that is shown, not its file; the next photo is not turned. Fails when none is shown.", {&kRequestKeys[62], 1}},
    {"storagemedia.media.metadata", "Describes the medium that plays.", nullptr, "Of what was begun last of all that plays. \"title\": of the tags, else the file's name without its extension. \"size\": \"4.7 GB\". \"date\": of the tags, else of the file, as \"2024-02-29 12:34:56\". \"codec\": \"H.264 / AAC\". \"dolby\": 0 none, 1 AC-3, 2 E-AC-3, 3 TrueHD, 4 not known.", {&kRequestKeys[63], 0}},
    {"storagemedia.dlna.entermmbroswer", "Opens the media browser on DLNA servers.", nullptr, nullptr, {&kRequestKeys[63], 0}},
    {"storagemedia.get.device.usage", "Tells how full a device is, in binary units.", nullptr, nullptr, {&kRequestKeys[63], 1}},
    {"storagemedia.play.playlistfile", "Checked and acknowledged, without effect.", nullptr, nullptr, {&kRequestKeys[64], 2}},
    {"storagemedia.set.itemperpage", "Sets the page size, from the next directory change on.", nullptr, nullptr, {&kRequestKeys[66], 1}},
    {"storagemedia.get.pagefiles", "Reads one page of a list.", nullptr, nullptr, {&kRequestKeys[67], 4}},
    {"storagemedia.dmr.playfile", "Prepares playback that a DLNA controller asked for.", nullptr, "Fails: the desktop is no renderer that a controller could give something to.", {&kRequestKeys[71], 1}},
    {"storagemedia.clear.mediamap", "Drops what has been indexed under a directory.", nullptr, nullptr, {&kRequestKeys[72], 1}},
    {"storagemedia.check.usb.device", "Asks whether a USB storage device is attached.", nullptr, nullptr, {&kRequestKeys[73], 0}},
    {"storagemedia.set.player.mode", "Sets the order of play.", nullptr, "0 in sequence, 1 repeat all, 2 repeat one, 3 shuffle; other values are refused.", {&kRequestKeys[73], 2}},
    {"storagemedia.get.browser.codec", "Describes the codecs of the medium that plays.", nullptr, "Fails when nothing of that type plays. A video has \"strTitle\", \"strVCodec\", \"strResolu\", \"FrameRate\", \"strACodec\" to \"strAlevels\", \"culVideoCodec\" and \"culAudioCodec\"; music \"strTitle\", \"Mchanel\" to \"strMalevels\" and \"culAudioCodec\"; a photo \"strTitle\", \"strPcodec\", \"strPresolu\" and, of a JPEG, \"strPJepg\": \"Baseline\" or \"Progressive\". All else is empty or 0, and so is what is not known. \"strMfrequen\" is like \"44100 Hz\", \"strMbirate\" like \"192 kbit/s\".", {&kRequestKeys[75], 1}},
    {"storagemedia.video.clear.resume", "Forgets the remembered positions of video.", nullptr, "On all sticks.", {&kRequestKeys[76], 0}},
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
