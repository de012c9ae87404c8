#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

namespace {

/// The pictures a request asks for. A path asks for that one file, otherwise a range of the current folder is meant.
struct Pictures {
    std::string path;
    int type = 0;              // a FileType
    unsigned int width = 240;  // pixels, at most
    unsigned int height = 360; // pixels, at most
    unsigned int startIndex = 0;
    unsigned int count = 9;
};

// Sets @p total to the number of pictures that end the request, and returns the browser's status. The total is in place
// before the browser is asked: its event thread may be quicker than this one.
int appendPictures(const Pictures& pictures, std::int32_t& total)
{
    const auto manager = storageManager();
    if (!pictures.path.empty()) {
        total = 1;
        return manager->m_folderBrowser.appendThumbnailList(pictures.path);
    }
    total = static_cast<std::int32_t>(pictures.count);
    return manager->m_folderBrowser.appendThumbnailList(static_cast<int>(pictures.startIndex), total);
}

} // namespace

bool CStorageMediaPlugin::startThumbnail(Json::Value* request, Json::Value* /*reply*/)
{
    if (request == nullptr) {
        LOG_ERR("jsonParams is NULL!!!");
        return false;
    }
    AsyncReqNotify& slot = m_requestSlots[SLOT_THUMBNAIL];
    if (const char* missing = readRequester(*request, slot)) { // what has been read stays, whatever fails below
        LOG_ERR("unknown %s", missing);
        return false;
    }
    slot.event = "startThumbnail";

    Pictures pictures;
    if (!readString(*request, "path", pictures.path) || pictures.path.empty()) {
        LOG_WAR("unknown Path");
    }
    if (!readInt(*request, "type", pictures.type)) {
        LOG_ERR("unknown type");
        return false;
    }
    if (!readUInt(*request, "width", pictures.width)) {
        LOG_DBG("unknown width, Set default:%d", pictures.width);
    }
    if (!readUInt(*request, "height", pictures.height)) {
        LOG_DBG("unknown heigth, Set default:%d", pictures.height);
    }
    if (!readUInt(*request, "startidx", pictures.startIndex)) {
        LOG_DBG("unknown startidx, Set default:%d", pictures.startIndex);
    }
    if (!readUInt(*request, "count", pictures.count)) {
        LOG_DBG("unknown count, Set default:%d", pictures.count);
    }
    LOG_DBG("channelId:%s, reqId:%s", slot.channel.c_str(), slot.reqId.c_str());
    LOG_DBG("width:%d, heigth:%d, type:%d, path:%s", pictures.width, pictures.height, pictures.type, pictures.path.c_str());
    LOG_DBG("startIdx:%d, count:%d", pictures.startIndex, pictures.count);

    int ret = appendPictures(pictures, m_thumbnailTotal);
    if (ret != 0) {
        LOG_ERR("add list failed!!!ret:%d", ret);
        return false;
    }
    ret = storageManager()->m_folderBrowser.startThumbnail(pictures.width, pictures.height,
                                                           static_cast<FileType>(pictures.type));
    if (ret != 0) {
        LOG_ERR("startThumbnail failed!!!ret:%d", ret);
        return false;
    }
    return true;
}

bool CStorageMediaPlugin::stopThumbnail(Json::Value* /*request*/, Json::Value* /*reply*/)
{
    const int ret = storageManager()->m_folderBrowser.stopThumbnail();
    if (ret != 0) {
        LOG_ERR("stopThumbnail failed!!!ret:%d", ret);
        return false;
    }
    return true;
}

void CStorageMediaPlugin::NotifyThumbnailInfo(bool success)
{
    ThumbnailChannel& pending = m_thumbnailChannel;
    LOG_DBG("[TVFW::CStoragePlugin] notify Thumbnail status:%d, index:%d, reqId:%s", success, m_thumbnailIndex,
            pending.reqId.c_str());
    if (pending.reqId.empty()) {
        return;
    }
    const std::string imageData; // hosts read the picture file; the key stays for those that look for it
    if (success) {
        LOG_DBG("[TVFW::CStoragePlugin] Calling getThumbnailDataByIndex:%d, imageData.size:%d", m_thumbnailIndex,
                static_cast<int>(imageData.size()));
    }
    Json::Value body;
    body["reqId"] = pending.reqId;
    body["index"] = m_thumbnailIndex;
    body["imageData"] = imageData;
    body["errorCode"] = success ? 0 : 1;
    if (m_pPublishCallback != nullptr) {
        m_pPublishCallback(pending.channel.c_str(), pending.event.c_str(), body);
    }
    LOG_DBG("[TVFW::CStoragePlugin] NotifyThumbnailInfo, clear reqId: %s", pending.reqId.c_str());
    pending.reqId.clear();
    m_thumbnailIndex = -1;
}

} // namespace tvfirmware
