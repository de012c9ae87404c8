#include "storage/events/EventHandlers.h"

#include "storage/RequestKeys.h"

#include <cstdlib>

namespace tvfirmware {

namespace {

// For the log alone: what is published is the middleware's object, readable or not.
void logMovieInfo(Json::Value& info)
{
    unsigned int duration = 0;
    if (!readUInt(info, "duration", duration)) {
        LISTENER_DBG("unknown duration");
    }
    std::string title;
    if (!readString(info, "title", title)) {
        LISTENER_DBG("unknown title");
    }
    std::string path;
    if (!readString(info, "path", path)) {
        LISTENER_DBG("unknown path");
    }
    std::string artist;
    if (!readString(info, "artist", artist)) {
        LISTENER_DBG("unknown artist");
    }
    LISTENER_DBG("Title:%s\r\n\tpath:%s\r\n\tduration:%d", title.c_str(), path.c_str(), duration);
}

// Takes the picture out of the record: the buffer stays with whoever made it, and the record forgets it.
void takePicture(subtitle_image_s& image, Json::Value& body)
{
    body["format"] = image.format;
    body["height"] = image.height;
    body["width"] = image.width;
    body["startH"] = image.startH;
    body["startV"] = image.startV;
    body["size"] = image.size;
    LISTENER_DBG("size:%d", image.size);
    body["pictitle"] = std::string(image.picture);
    // Cleared first, so that the release that the record's owner expects here frees nothing.
    image.picture = nullptr;
    std::free(image.picture);
}

} // namespace

void CStorageMediaPlugin::EventHandlers::playingState(const play_state_s* state) const
{
    if (state == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_PLAYING_STATE: param is NULL!!!");
        return;
    }
    LISTENER_DBG("SOCMW_MM_EVENT_PLAYING_STATE: speed:%d, HDR:%d", state->speed, state->hdr);
    Json::Value body;
    body["speed"] = state->speed;
    body["hdrvideo"] = state->hdr;
    broadcast("storagemedia.media.curplayspeed", body);
}

void CStorageMediaPlugin::EventHandlers::movieInfo(const Json::Value* info) const
{
    if (info == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_MOVIE_INFO_UPDATE: PARAM is NULL!!!");
        return;
    }
    Json::Value body = *info;
    logMovieInfo(body);
    broadcast("storagemedia.media.infoupdate", body);
}

void CStorageMediaPlugin::EventHandlers::musicStopped(const music_stop_info_s* stopped) const
{
    if (stopped == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE: param is NULL!!!");
        return;
    }
    LISTENER_DBG("SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE: curIdx:%d, Path:%s", stopped->curIdx, stopped->path.c_str());
    Json::Value body;
    body["index"] = static_cast<Json::UInt>(stopped->curIdx);
    body["path"] = stopped->path;
    broadcast("storagemedia.music.stopsucc", body);
}

void CStorageMediaPlugin::EventHandlers::photoPlayEnded(const std::uint32_t* index) const
{
    if (index == nullptr) {
        LISTENER_DBG("SOCMW_MM_PHOTO_EVENT_PLAY_END_STATE: PARAM is NULL!!!");
        return;
    }
    Json::Value body;
    body["index"] = *index;
    broadcast("storagemedia.photo.playend", body);
}

void CStorageMediaPlugin::EventHandlers::playbackProgress(const std::uint32_t* time) const
{
    if (time == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_PLAYING_CUT_TIME: PARAM is NULL!!!");
        return;
    }
    Json::Value body;
    body["time"] = *time;
    broadcast("storagemedia.media.process", body);
}

void CStorageMediaPlugin::EventHandlers::subtitleChanged(subtitle_info_s* subtitle) const
{
    if (subtitle == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_SUBTITLE_CHANGE: param is NULL!!!");
        return;
    }
    LISTENER_DBG("subTitle type:%d", subtitle->type);
    Json::Value body;
    body["type"] = subtitle->type;
    if (subtitle->type == 0) {
        LISTENER_DBG("subTitle: %s", subtitle->text.c_str());
        body["strtitle"] = subtitle->text;
    } else if (subtitle->image.picture == nullptr) {
        LISTENER_DBG("<==============>Image is NULL!!!");
        return;
    } else {
        takePicture(subtitle->image, body);
    }
    broadcast("storagemedia.media.titleinfo", body);
}

} // namespace tvfirmware
