#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

#include <cmath>

namespace tvfirmware {

bool CStorageMediaPlugin::searchFiles(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    AsyncReqNotify& slot = m_requestSlots[SLOT_SEARCH];
    if (const char* missing = readRequester(*request, slot)) { // what has been read stays, whatever fails below
        LOG_ERR("unknown %s", missing);
        return false;
    }
    int number = m_itemCountPerPage;
    if (!readInt(*request, "number", number)) {
        LOG_DBG("unknown iterPerNum, Set default:%d", number);
    }
    std::string directory;
    if (!readString(*request, "dirpath", directory)) {
        LOG_ERR("unknown dirpath");
        return false;
    }
    LOG_DBG("Path:%s, Channleid:%s, itemPerNum:%d, reqId:%s", directory.c_str(), slot.channel.c_str(), number,
            slot.reqId.c_str());

    m_itemCountPerPage = number; // a search sets the page size of later directory changes too
    storageManager()->m_folderBrowser.stopThumbnail();
    return storageManager()->searchFileType(directory, FILE_TYPE_VIDEO, number) == 0;
}

bool CStorageMediaPlugin::GetVideoList(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        return false;
    }
    std::string path;
    if (!readString(*request, "path", path) || path.empty()) {
        return false;
    }
    PageData page;
    GetPageParams(request, page);
    if (page.pageSize == 0) {
        page.pageSize = 100;
    }
    const double pages = std::ceil(static_cast<double>(m_intList.size()) / static_cast<double>(page.pageSize));
    (*reply)["outlineData"] = Json::Value(Json::arrayValue);
    (*reply)["pageNum"] = static_cast<Json::Int>(pages);
    (*reply)["recordNum"] = static_cast<Json::UInt>(m_intList.size());
    return true;
}

void CStorageMediaPlugin::NotifyScanFinished(int count)
{
    LOG_DBG("[TVFW::CStoragePlugin] notify ScanFinished reqId:%s", m_scanChannel.reqId.c_str());
    if (m_scanChannel.reqId.empty()) {
        return;
    }
    Json::Value body;
    body["reqId"] = m_scanChannel.reqId;
    body["filterType"] = m_scanChannel.filterType;
    body["count"] = count;
    if (m_pPublishCallback != nullptr) {
        m_pPublishCallback(m_scanChannel.channel.c_str(), m_scanChannel.event.c_str(), body);
    }
    LOG_DBG("[TVFW::CStoragePlugin] NotifyScanFinished, clear reqId: %s", m_scanChannel.reqId.c_str());
    m_scanChannel.reqId.clear();
    m_scanChannel.filterType.clear();
    m_scanChannel.extra.clear();
}

} // namespace tvfirmware
