#include "storage/events/EventHandlers.h"

namespace tvfirmware {

namespace {

template <typename T>
T* as(void* param)
{
    return static_cast<T*>(param);
}

} // namespace

void CStorageMediaPlugin::onRecvEvent(int eventId, void* param)
{
    if (m_pThisControl == nullptr) {
        LOG_ERR("Instance is NULL!!!!");
        return;
    }
    LOG_INFO("nEvt : %d", eventId);
    const EventHandlers on = {*m_pThisControl};
    switch (eventId) {
    case SOCMW_MM_EVENT_USB_DEVICE_PLUGIN:
        return on.devicePlugged();
    case SOCMW_MM_EVENT_USB_DEVICE_MOUNT:
        return on.deviceMounted();
    case SOCMW_MM_EVENT_USB_DEVICE_REMOVED:
        return on.deviceRemoved(as<Json::Value>(param));
    case SOCMW_MM_EVENT_DEVICE_LIST_UPDATE:
        return on.deviceListChanged(as<Json::Value>(param));
    case SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED:
        return on.directoryChanged(as<std::vector<FolderFileInfo_s>>(param));
    case SOCMW_MM_EVENT_FB_FOLDER_UPDATE:
        return on.searchFinished(as<Json::Value>(param));
    case SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE:
        return on.searchFragment(*as<Json::Value>(param));
    case SOCMW_MM_EVENT_THUMBNAIL_DATA_READY:
    case SOCMW_MM_EVENT_THUMBNAIL_DATA_READY_SECOND:
        return on.thumbnailReady(as<thumbnail_ready_s>(param));
    case SOCMW_MM_EVENT_GROUP_COMPLETED:
        return on.groupingFinished(as<std::vector<std::string>>(param));
    case SOCMW_MM_EVENT_MEDIA_LOAD_SUCCESS:
        return on.passOn("storagemedia.media.loadsuccess", as<Json::Value>(param));
    case SOCMW_MM_EVENT_PLAYING_STATE:
    case SOCMW_MM_EVENT_PLAYING_STATE_SECOND:
        return on.playingState(as<play_state_s>(param));
    case SOCMW_MM_EVENT_MEDIA_LOAD_FAILED:
    case SOCMW_MM_EVENT_MEDIA_LOAD_FAILED_SECOND:
        return on.passOn("storagemedia.media.loadfailed", as<Json::Value>(param));
    case SOCMW_MM_EVENT_AUDIO_NOT_SUPPORT_STATE:
        return on.passOn("storagemedia.audio.notsupport", as<Json::Value>(param));
    case SOCMW_MM_EVENT_PLAY_END_STATE:
        return on.signal("storagemedia.video.music.playend");
    case SOCMW_MM_EVENT_VIDEO_NOT_SUPPORT_STATE:
        return on.loggedSignal("SOCMW_MM_EVENT_VIDEO_NOT_SUPPORT_STATE", "storagemedia.media.notsupport");
    case SOCMW_MM_EVENT_MOVIE_INFO_UPDATE:
    case SOCMW_MM_EVENT_MOVIE_INFO_UPDATE_SECOND:
        return on.movieInfo(as<Json::Value>(param));
    case SOCMW_MM_EVENT_MOVIE_STOP_SUCCESS_STATE:
        return on.passOnRequired("SOCMW_MM_EVENT_MOVIE_STOP_SUCCESS_STATE", "storagemedia.movie.stopsucc",
                                 as<Json::Value>(param));
    case SOCMW_MM_EVENT_PLAY_FAILED:
    case SOCMW_MM_EVENT_PLAY_FAILED_SECOND:
        return on.signal("storagemedia.media.playfailed");
    case SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE:
        return on.musicStopped(as<music_stop_info_s>(param));
    case SOCMW_MM_EVENT_PHOTO_LOAD_SUCCESS:
        return on.passOn("storagemedia.media.photo.loadsuccess", as<Json::Value>(param));
    case SOCMW_MM_EVENT_PHOTO_INFO_UPDATE:
        return on.photoInfo(as<std::string>(param));
    case SOCMW_MM_PHOTO_EVENT_PLAY_END_STATE:
        return on.photoPlayEnded(as<std::uint32_t>(param));
    case SOCMW_MM_PHOTO_EVENT_STOP_SUCCESS_STATE:
        return on.passOnRequired("SOCMW_MM_PHOTO_EVENT_STOP_SUCCESS_STATE", "storagemedia.photo.stopsucc",
                                 as<Json::Value>(param));
    case SOCMW_MM_EVENT_PLAYING_CUT_TIME:
        return on.playbackProgress(as<std::uint32_t>(param));
    case SOCMW_MM_EVENT_SUBTITLE_CHANGE:
        return on.subtitleChanged(as<subtitle_info_s>(param));
    case SOCMW_DLNA_EVENT_DMR_SETURI:
        return on.loggedSignal("SOCMW_DLNA_EVENT_DMR_SETURI", "storagemedia.dlna.dmr.seturl");
    case SOCMW_DLNA_EVENT_DMR_PLAY:
        return on.rendererPlay(as<std::int32_t>(param));
    case SOCMW_DLNA_EVENT_DMR_PLAYEND:
        return on.loggedSignal("SOCMW_DLNA_EVENT_DMR_PLAYEND", "storagemedia.dlna.playend");
    case SOCMW_DLNA_EVENT_DMR_PAUSE:
    case SOCMW_DLNA_EVENT_DMR_RESUME:
        return on.rendererPause(eventId == SOCMW_DLNA_EVENT_DMR_PAUSE);
    case SOCMW_DLNA_EVENT_DMR_STOP:
        return on.loggedSignal("SOCMW_DLNA_EVENT_DMR_STOP", "storagemedia.dlna.stopfile");
    case SOCMW_DLNA_EVENT_DMR_SEEK:
        return on.rendererSeek(as<dmr_seek_s>(param));
    case SOCMW_DLNA_EVENT_DMR_MUTE:
    case SOCMW_DLNA_EVENT_DMR_UNMUTE:
        return on.rendererMute(eventId == SOCMW_DLNA_EVENT_DMR_MUTE);
    case SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME:
        return on.rendererVolume(as<std::int32_t>(param));
    case SOCMW_DLNA_EVENT_AUDIO_PROGRESS:
        LOG_DBG("SOCMW_DLNA_EVENT_AUDIO_PROGRESS"); // not published
        return;
    case SOCMW_MM_EVENT_FASTBOOT_SUPERDEMO:
        return on.signal("storagemedia.fastboot.superdemo");
    case SOCMW_MM_EVENT_SET_USB_SOURCE:
        return on.signal("storagemedia.set.usb.source");
    default:
        LOG_WAR("Unknown event id:%d", eventId);
    }
}

void CStorageMediaPlugin::EventHandlers::broadcast(const char* notification, Json::Value& body) const
{
    plugin.m_pPublishCallback("storagemedia", notification, body);
}

void CStorageMediaPlugin::EventHandlers::signal(const char* notification) const
{
    Json::Value body;
    broadcast(notification, body);
}

void CStorageMediaPlugin::EventHandlers::loggedSignal(const char* middlewareName, const char* notification) const
{
    LISTENER_DBG("%s", middlewareName);
    signal(notification);
}

void CStorageMediaPlugin::EventHandlers::passOn(const char* notification, const Json::Value* info) const
{
    Json::Value body = info != nullptr ? *info : Json::Value();
    broadcast(notification, body);
}

void CStorageMediaPlugin::EventHandlers::passOnRequired(const char* middlewareName, const char* notification,
                                                        const Json::Value* info) const
{
    if (info == nullptr) {
        LISTENER_DBG("%s: param is NULL!!!", middlewareName);
        return;
    }
    passOn(notification, info);
}

} // namespace tvfirmware
