#include "storage/events/EventHandlers.h"

namespace tvfirmware {

void CStorageMediaPlugin::EventHandlers::thumbnailReady(const thumbnail_ready_s* thumbnail) const
{
    if (thumbnail == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_THUMBNAIL_DATA_READY: param is NULL!!!");
        return;
    }
    LISTENER_DBG("idx:%d, Path:%s", thumbnail->index, thumbnail->path);
    const AsyncReqNotify& slot = plugin.m_requestSlots[SLOT_THUMBNAIL];
    Json::Value body;
    if (thumbnail->ok != 0) {
        const std::string path = thumbnail->path;
        const std::string filepath = thumbnail->filepath;
        body["path"] = path;
        body["filepath"] = filepath;
    } else {
        body["path"] = "";
    }
    body["index"] = thumbnail->index;
    body["reqId"] = slot.reqId;
    // The index within the request ends it; nothing is cleared then.
    const bool last = static_cast<std::int64_t>(thumbnail->index) + 1 >= plugin.m_thumbnailTotal;
    const std::string notification = slot.event + (last ? ".complete" : ".fragment");
    plugin.m_pPublishCallback(slot.channel.c_str(), notification.c_str(), body);
}

} // namespace tvfirmware
