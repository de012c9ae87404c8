#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

namespace {

Json::Value describe(const media_file_info_s& info)
{
    Json::Value answer;
    answer["type"] = static_cast<Json::UInt>(info.type);
    switch (info.type) {
    case FILE_TYPE_MUSIC:
        answer["duration"] = static_cast<Json::UInt>(info.duration);
        answer["album"] = info.music.album;
        answer["artist"] = info.music.artist;
        answer["genre"] = info.music.genre;
        break;
    case FILE_TYPE_VIDEO:
        answer["duration"] = static_cast<Json::UInt>(info.duration);
        break;
    case FILE_TYPE_PHOTO:
    case FILE_TYPE_PANORAMA:
        answer["height"] = static_cast<Json::UInt>(info.height);
        answer["width"] = static_cast<Json::UInt>(info.width);
        break;
    default:
        break;
    }
    return answer;
}

} // namespace

bool CStorageMediaPlugin::getMediaFileInfo(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string path;
    if (!readString(*request, "dirpath", path)) {
        LOG_ERR("unknown path, set cd up!!!");
        return false;
    }
    LOG_DBG("Path:%s", path.c_str());
    media_file_info_s info;
    if (storageManager()->m_folderBrowser.getMediaFileInfo(path, info) != 0) {
        return false;
    }
    LOG_DBG("Type:%d, dura:%d", info.type, info.duration);
    LOG_DBG("album:%s, artist:%s", info.music.album.c_str(), info.music.artist.c_str());
    LOG_DBG("height:%d, width:%d", info.height, info.width);
    *reply = describe(info);
    return true;
}

} // namespace tvfirmware
