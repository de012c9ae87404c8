#pragma once

// Event ids that the platform passes to the listener, and the records that some of them point to. The platform owns every
// record; it must stay valid for the length of the call and may be gone afterwards.

#include <cstdint>
#include <string>

/// Event ids 0 to 52; the comment names the type that the listener's pointer has. Ids left out are never handled.
enum SocMwEventId : int {
    SOCMW_MM_EVENT_USB_DEVICE_PLUGIN = 0,           // not read
    SOCMW_MM_EVENT_USB_DEVICE_MOUNT = 1,            // not read
    SOCMW_MM_EVENT_USB_DEVICE_REMOVED = 2,          // Json::Value: "devType", "path"
    SOCMW_MM_EVENT_DEVICE_LIST_UPDATE = 3,          // Json::Value: "devType", "devcount", "devlist"
    SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED = 4,     // std::vector<FolderFileInfo_s>
    SOCMW_MM_EVENT_FB_FOLDER_UPDATE = 5,            // Json::Value
    SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE = 6,    // Json::Value, never null
    SOCMW_MM_EVENT_THUMBNAIL_DATA_READY = 8,        // thumbnail_ready_s
    SOCMW_MM_EVENT_THUMBNAIL_DATA_READY_SECOND = 9, // thumbnail_ready_s
    SOCMW_MM_EVENT_GROUP_COMPLETED = 10,            // std::vector<std::string>
    SOCMW_MM_EVENT_MEDIA_LOAD_SUCCESS = 12,         // Json::Value or null
    SOCMW_MM_EVENT_PLAYING_STATE = 13,              // play_state_s
    SOCMW_MM_EVENT_MEDIA_LOAD_FAILED = 14,          // Json::Value or null
    SOCMW_MM_EVENT_AUDIO_NOT_SUPPORT_STATE = 15,    // Json::Value or null
    SOCMW_MM_EVENT_PLAY_END_STATE = 16,             // not read
    SOCMW_MM_EVENT_VIDEO_NOT_SUPPORT_STATE = 19,    // not read
    SOCMW_MM_EVENT_MOVIE_INFO_UPDATE = 21,          // Json::Value
    SOCMW_MM_EVENT_MOVIE_STOP_SUCCESS_STATE = 22,   // Json::Value
    SOCMW_MM_EVENT_PLAYING_STATE_SECOND = 23,       // play_state_s
    SOCMW_MM_EVENT_PLAY_FAILED = 25,                // not read
    SOCMW_MM_EVENT_MOVIE_INFO_UPDATE_SECOND = 26,   // Json::Value
    SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE = 27,   // music_stop_info_s
    SOCMW_MM_EVENT_PHOTO_LOAD_SUCCESS = 29,         // Json::Value or null
    SOCMW_MM_EVENT_MEDIA_LOAD_FAILED_SECOND = 31,   // Json::Value or null
    SOCMW_MM_EVENT_PLAY_FAILED_SECOND = 32,         // not read
    SOCMW_MM_EVENT_PHOTO_INFO_UPDATE = 33,          // std::string
    SOCMW_MM_PHOTO_EVENT_PLAY_END_STATE = 34,       // std::uint32_t index
    SOCMW_MM_PHOTO_EVENT_STOP_SUCCESS_STATE = 35,   // Json::Value
    SOCMW_MM_EVENT_PLAYING_CUT_TIME = 37,           // std::uint32_t time
    SOCMW_MM_EVENT_SUBTITLE_CHANGE = 38,            // subtitle_info_s
    SOCMW_DLNA_EVENT_DMR_SETURI = 39,               // not read
    SOCMW_DLNA_EVENT_DMR_PLAY = 40,                 // std::int32_t file type
    SOCMW_DLNA_EVENT_DMR_PLAYEND = 41,              // not read
    SOCMW_DLNA_EVENT_DMR_PAUSE = 42,                // not read
    SOCMW_DLNA_EVENT_DMR_STOP = 43,                 // not read
    SOCMW_DLNA_EVENT_DMR_RESUME = 44,               // not read
    SOCMW_DLNA_EVENT_DMR_SEEK = 45,                 // dmr_seek_s
    SOCMW_DLNA_EVENT_DMR_MUTE = 46,                 // not read
    SOCMW_DLNA_EVENT_DMR_UNMUTE = 47,               // not read
    SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME = 48,         // std::int32_t volume
    SOCMW_DLNA_EVENT_AUDIO_PROGRESS = 49,           // not read
    SOCMW_MM_EVENT_FASTBOOT_SUPERDEMO = 51,         // not read
    SOCMW_MM_EVENT_SET_USB_SOURCE = 52,             // not read
};

/// One thumbnail of a running request.
struct thumbnail_ready_s {
    std::int32_t index = 0;         ///< index within the request, from 0
    std::int32_t ok = 0;            ///< non-zero: the picture was written
    const char* path = nullptr;     ///< the media file
    const char* filepath = nullptr; ///< the picture file, when ok
};

/// Play speed and dynamic range of the video that plays.
struct play_state_s {
    std::int32_t speed = 0; ///< 1 normal, negative backwards
    bool hdr = false;
};

/// The track that played when music stopped.
struct music_stop_info_s {
    std::int32_t curIdx = 0;
    std::string path;
};

/// A subtitle drawn as a picture.
struct subtitle_image_s {
    std::uint32_t startH = 0;   ///< pixels from the left
    std::uint32_t startV = 0;   ///< pixels from the top
    std::uint32_t width = 0;    ///< pixels
    std::uint32_t height = 0;   ///< pixels
    std::uint32_t size = 0;     ///< bytes of picture data
    std::uint32_t reserved = 0; ///< not read by the plugin
    std::int32_t format = 0;    ///< the platform's picture format code
    char* picture = nullptr;    ///< picture data as zero-terminated text; the listener sets it to null
};

/// A subtitle that has just appeared.
struct subtitle_info_s {
    std::int32_t type = 0; ///< 0: text; any other value: picture
    std::string text;
    subtitle_image_s image;
};

/// Where a renderer's controller asked to seek to.
struct dmr_seek_s {
    std::int32_t pos = 0; ///< published as unsigned
    std::int32_t mod = 0; ///< the platform's seek mode
};
