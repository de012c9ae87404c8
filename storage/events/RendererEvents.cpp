#include "storage/events/EventHandlers.h"

namespace tvfirmware {

void CStorageMediaPlugin::EventHandlers::rendererPlay(const std::int32_t* fileType) const
{
    LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_PLAY");
    if (fileType == nullptr) {
        LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_PLAY: param is NULL!!!");
        return;
    }
    LISTENER_DBG("DMR File Type:%d", *fileType);
    Json::Value body;
    body["type"] = *fileType;
    broadcast("storagemedia.dlna.playfiletype", body);
}

void CStorageMediaPlugin::EventHandlers::rendererPause(bool pause) const
{
    Json::Value body;
    body["pause"] = pause;
    LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_PAUSE/RESUME:%s", pause ? "Pause" : "Resume");
    broadcast("storagemedia.dlna.dmrpause", body);
}

void CStorageMediaPlugin::EventHandlers::rendererSeek(const dmr_seek_s* seek) const
{
    LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_SEEK");
    if (seek == nullptr) {
        LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_SEEK: param is NULL!!!");
        return;
    }
    LISTENER_DBG("Seek pos:%d, mod:%d", seek->pos, seek->mod);
    Json::Value body;
    body["seekpos"] = static_cast<Json::UInt>(seek->pos);
    body["seekmod"] = seek->mod;
    broadcast("storagemedia.dlna.setseek", body);
}

void CStorageMediaPlugin::EventHandlers::rendererMute(bool mute) const
{
    Json::Value body;
    body["mute"] = mute;
    LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_UNMUTE:%s", mute ? "Mute" : "UnMute");
    broadcast("storagemedia.dlna.dmrmute", body);
}

void CStorageMediaPlugin::EventHandlers::rendererVolume(const std::int32_t* volume) const
{
    LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME");
    if (volume == nullptr) {
        LISTENER_DBG("SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME: param is NULL!!!");
        return;
    }
    LISTENER_DBG("DMR change volume:%d", *volume);
    Json::Value body;
    body["volume"] = *volume;
    broadcast("storagemedia.dlna.adjustvolume", body);
}

} // namespace tvfirmware
