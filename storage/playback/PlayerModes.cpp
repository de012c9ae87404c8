#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/playback/MediaTypes.h"

namespace tvfirmware {

bool CStorageMediaPlugin::setPlayerMode(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    unsigned int type = 0;
    if (!readUInt(*request, "type", type)) {
        LOG_ERR("unknown File Type");
        return false;
    }
    unsigned int mode = 0;
    if (!readUInt(*request, "mode", mode)) {
        LOG_ERR("unknown mode");
        return false;
    }
    LOG_DBG("file type:%d, mode:%d", type, mode);
    if (!isPlayable(type)) {
        LOG_ERR("not a Playable Type:%d", type);
        return false;
    }
    const int ret = storageManager()->setPlayerMode(static_cast<FileType>(type), static_cast<PlayerModeE>(mode));
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    return true;
}

bool CStorageMediaPlugin::getPlayMode(Json::Value* request, Json::Value* reply)
{
    LOG_DBG("Enter getPlayMode");
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    int mediaType = 0;
    if (!readInt(*request, "mediaType", mediaType)) {
        LOG_WAR("unknown mediaType, set to default: %d", mediaType);
    }
    Json::Value mode;
    if (storageManager()->getPlayMode(mode, mediaType) != 0) {
        return false;
    }
    *reply = std::move(mode);
    return true;
}

bool CStorageMediaPlugin::kiroRepeatModeSet(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    int mode = 0;
    if (!readInt(*request, "mode", mode)) {
        LOG_ERR("unknown mode");
        return false;
    }
    const int ret = storageManager()->repeatModeSet(mode);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    return true;
}

} // namespace tvfirmware
