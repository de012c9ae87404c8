#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

bool CStorageMediaPlugin::chgdir(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string channelId;
    if (!readString(*request, "channelId", channelId) || channelId.empty()) {
        LOG_ERR("unknown channelId");
        return false;
    }
    std::string reqId;
    if (!readString(*request, "reqId", reqId) || reqId.empty()) {
        LOG_ERR("unknown reqId");
        return false;
    }
    int number = 9;
    if (!readInt(*request, "number", number)) {
        LOG_WAR("unknown number, set default:%d", number);
    }
    m_itemCountPerPage = number;
    LOG_INFO("Channleid:%s, reqId:%s, itemPerPage:%d", channelId.c_str(), reqId.c_str(), number);

    // Unchecked, through the modifying access: an absent directory is the empty one, and stays in the request as null.
    const std::string directory = (*request)["dirpath"].asString();
    LOG_INFO("Change to dir: %s, ItemPerPage:%d", directory.c_str(), number);

    AsyncReqNotify& slot = m_requestSlots[SLOT_CHGDIR];
    m_directoryChanging = !slot.extra.empty() && slot.extra != directory;
    if (m_directoryChanging) {
        LOG_WAR("fast ch dir: %s to : %s", slot.extra.c_str(), directory.c_str());
    }
    // Recorded even when the change fails: its late result must still find whom to answer.
    slot.extra = directory;
    slot.channel = channelId;
    slot.reqId = reqId;

    storageManager()->m_folderBrowser.stopThumbnail();
    if (storageManager()->m_folderBrowser.chdir(directory, m_itemCountPerPage) != 0) {
        LOG_ERR("Chg to dit:%s failed!!!", directory.c_str());
        return false;
    }
    m_pagingPosition = 0;
    return true;
}

} // namespace tvfirmware
