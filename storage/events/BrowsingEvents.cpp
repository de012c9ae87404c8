#include "storage/events/EventHandlers.h"

#include "storage/Platform.h"
#include "storage/browsing/FileEntry.h"

namespace tvfirmware {

namespace {

/// Whom an asynchronous request is answered to. A copy: a newer request may overwrite the slot meanwhile.
struct Requester {
    std::string channel;
    std::string reqId;

    explicit Requester(const AsyncReqNotify& slot)
        : channel(slot.channel)
        , reqId(slot.reqId)
    {
    }
};

// One entry of a changed directory, and its line.
Json::Value changedEntry(const FolderFileInfo_s& file)
{
    const bool isPhoto360 = file.isPhoto360 != 0;
    Json::Value entry = folderEntry(file);
    entry["isPhoto360"] = isPhoto360;
    LISTENER_DBG("File name:%s, ctime:%s, isPhoto:%d", file.name.c_str(), file.ctime.c_str(), isPhoto360);
    return entry;
}

// Published with an empty reqId too: that nobody waits is for the host to see.
void answer(PublishNotificationCallback publish, const Requester& requester, const char* notification, Json::Value& body)
{
    body["reqId"] = requester.reqId;
    publish(requester.channel.c_str(), notification, body);
}

} // namespace

void CStorageMediaPlugin::EventHandlers::directoryChanged(const std::vector<FolderFileInfo_s>* files) const
{
    if (files == nullptr) {
        LISTENER_DBG("Pointer is NULL!!!");
        return;
    }
    AsyncReqNotify& slot = plugin.m_requestSlots[SLOT_CHGDIR];
    const Requester requester(slot);
    Json::Value body;
    body["filecount"] = static_cast<Json::UInt>(files->size());
    std::string directory; // of the result; empty until an entry has one
    Json::Value list(Json::arrayValue);
    for (const FolderFileInfo_s& file : *files) {
        if (!directory.empty()) {
            list.append(changedEntry(file));
            continue;
        }
        const FolderFileInfo_s entry = file; // a copy: while it is asked, the browser may go on writing its own
        directory = storageManager()->m_folderBrowser.getFileDirPath(entry.path);
        const bool otherDirectory = directory != slot.extra && directory != entry.path;
        if (!directory.empty() && plugin.m_directoryChanging && otherDirectory) {
            // A newer change has overtaken this one; its own result is still to come.
            LISTENER_LOG(INFO, "Fast Switch dir:%s to %s ", directory.c_str(), slot.extra.c_str());
            return;
        }
        list.append(changedEntry(entry));
    }
    body["filelst"] = std::move(list);
    answer(plugin.m_pPublishCallback, requester, "storagemedia.folder.chgdir.complete", body);
    LISTENER_LOG(INFO, "chgdir.complete: reqId:%s, channelId:%s", requester.reqId.c_str(), requester.channel.c_str());
    slot.extra.clear();
}

void CStorageMediaPlugin::EventHandlers::searchFinished(const Json::Value* result) const
{
    if (result == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_FB_FOLDER_UPDATE: PARAM is NULL!!!");
        return;
    }
    Json::Value body = *result;
    LISTENER_DBG("SOCMW_MM_EVENT_FB_FOLDER_UPDATE");
    answer(plugin.m_pPublishCallback, Requester(plugin.m_requestSlots[SLOT_SEARCH]),
           "storagemedia.video.searchFiles.complete", body);
}

void CStorageMediaPlugin::EventHandlers::searchFragment(const Json::Value& fragment) const
{
    Json::Value body = fragment;
    LISTENER_DBG("SOCMW_MM_EVENT_FILTER_DATA_READY_UPDATE");
    answer(plugin.m_pPublishCallback, Requester(plugin.m_requestSlots[SLOT_SEARCH]),
           "storagemedia.video.searchFiles.fragment", body);
}

void CStorageMediaPlugin::EventHandlers::groupingFinished(const std::vector<std::string>* keys) const
{
    if (keys == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_GROUP_COMPLETED: PARAM is NULL!!!");
        return;
    }
    Json::Value list(Json::arrayValue);
    for (const std::string& key : *keys) {
        Json::Value entry;
        entry["keystr"] = key;
        list.append(std::move(entry));
        LISTENER_DBG("====>>>>>group key:%s", key.c_str());
    }
    Json::Value body;
    body["keyNum"] = static_cast<Json::UInt>(keys->size());
    body["keylst"] = std::move(list);
    answer(plugin.m_pPublishCallback, Requester(plugin.m_requestSlots[SLOT_GROUP]),
           "storagemedia.group.musicorphoto.complete", body);
}

void CStorageMediaPlugin::EventHandlers::photoInfo(const std::string* title) const
{
    if (title == nullptr) {
        LISTENER_DBG("SOCMW_MM_EVENT_PHOTO_INFO_UPDATE: PARAM is NULL!!!");
        return;
    }
    Json::Value body;
    body["strTitle"] = *title;
    broadcast("storagemedia.photo.infoupdate", body);
}

} // namespace tvfirmware
