#pragma once

// Enumerations and records exchanged with the platform. Every enumeration has underlying type int: the plugin passes any
// integer of a request on, known to the platform or not. Strings are bytes as the file system or the tags hold them.

#include <cstdint>
#include <string>

/// Kind of a folder entry or of a medium. 3, 4 and 5 can be played; 4 and 5 can be wound.
enum FileType : int {
    FILE_TYPE_UNKNOWN = 0,
    FILE_TYPE_FOLDER = 1,
    FILE_TYPE_OTHER = 2,
    FILE_TYPE_PHOTO = 3,
    FILE_TYPE_VIDEO = 4,
    FILE_TYPE_MUSIC = 5,
    FILE_TYPE_PLAYLIST = 6,
    FILE_TYPE_PANORAMA = 7, ///< a picture like 3, described by width and height
};

/// What FolderBrowser::groupFiles groups by. 10 and 11 are accepted and left to the platform.
enum GroupFileType : int {
    GROUP_TYPE_NONE = 0,
    GROUP_TYPE_MUSIC = 1,
    GROUP_TYPE_GENRE = 2,
    GROUP_TYPE_ARTIST = 3,
    GROUP_TYPE_ALBUM = 4,
    GROUP_TYPE_DATE = 5,
    GROUP_TYPE_MONTH = 6,
    GROUP_TYPE_MONTH_OF_YEAR = 7,
    GROUP_TYPE_YEAR = 8,
    GROUP_TYPE_MAX = 9,
};

/// Order in which a play-all run goes through its files. Passed on unchecked.
enum PlayerModeE : int {
    PLAYER_MODE_SEQUENCE = 0,
    PLAYER_MODE_REPEAT_ALL = 1,
    PLAYER_MODE_REPEAT_ONE = 2,
    PLAYER_MODE_SHUFFLE = 3,
};

namespace tvfirmware {

/// Device states, each told to the host under a notification name of its own.
enum UsbDevStatus : int {
    USB_DEV_STATUS_PLUGIN = 0,
    USB_DEV_STATUS_MOUNT = 1,
    USB_DEV_STATUS_UNMOUNT = 2,
    USB_DEV_STATUS_DLNA_MOUNT = 3,
    USB_DEV_STATUS_DLNA_UNMOUNT = 4,
};

} // namespace tvfirmware

/// Tags of a piece of music; empty where the file has none.
struct media_music_info_s {
    std::string artist;
    std::string album;
    std::string genre;
};

/// What the platform knows of one media file.
struct media_file_info_s {
    std::string path; ///< full path
    FileType type = FILE_TYPE_UNKNOWN;
    std::string title;
    std::string year;
    std::int32_t duration = 0; ///< seconds
    std::int32_t width = 0;    ///< pixels
    std::int32_t height = 0;   ///< pixels
    media_music_info_s music;
};

/// One entry of a folder.
struct FolderFileInfo_s {
    std::int32_t id = 0;    ///< the platform's own; the plugin does not read it
    std::int32_t type = 0;  ///< a FileType
    std::uint64_t size = 0; ///< bytes
    std::string ctime;      ///< creation time, formatted by the platform
    std::string name;       ///< file name without its directory
    std::string path;       ///< full path
    std::string title;
    std::int32_t isPhoto360 = 0; ///< non-zero: a 360-degree photo
};

/// Which page FolderBrowser::getOnePageFileInfo is asked for.
struct page_option {
    std::int32_t pageid = 0; ///< index of the page, from 0
    std::int32_t type = 0;   ///< list: 0 a directory by its path, 1 the current list, 2 a group by its key
    std::string keystr;      ///< the group's key, for list type 2
    std::string dirpath;     ///< the directory, for list type 0
};

/// Metadata of the medium that plays, as texts ready to show.
struct meta_data_t {
    std::string size;
    std::string title;
    std::string date;
    std::string codec;
    std::int32_t dolby = 4; ///< Dolby indicator; 4 while the platform has not set it
};

/// Codec description of the medium that plays: video (and its sound), music and photo. Fields of other kinds stay empty.
struct browser_codec {
    std::string strTitle;
    std::string strVCodec;
    std::string strResolu; ///< "WIDTHxHEIGHT"
    std::string strACodec;
    std::string strSubFormat;
    std::string strAprofile;
    std::string strAlevels;
    std::uint32_t FrameRate = 0; ///< frames a second
    std::int32_t Achannel = 0;
    std::int32_t Afrequen = 0;      ///< Hz
    std::int32_t Abitrate = 0;      ///< bits a second
    std::int32_t culVideoCodec = 0; ///< the platform's codec number
    std::int32_t culAudioCodec = 0; ///< the platform's codec number
    std::uint32_t Mchanel = 0;
    std::string strMcodec;
    std::string strMfrequen;
    std::string strMbirate;
    std::string strMaprofile;
    std::string strMalevels;
    std::string strPcodec;
    std::string strPresolu;
    std::string strPJepg;
};
