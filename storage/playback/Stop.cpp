#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/playback/MediaTypes.h"

namespace tvfirmware {

bool CStorageMediaPlugin::stopMediaFile(Json::Value* request, Json::Value* reply)
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
    unsigned int index = 0;
    LOG_DBG("file type:%d, index:%d", type, index);
    if (!isPlayable(type)) {
        LOG_ERR("unknown unPlayable Type:%d", type);
        return false;
    }
    const int ret = storageManager()->stopMediaFile(static_cast<FileType>(type), index);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    LOG_DBG("stop file type:%d, index:%d", type, index);
    (*reply)["index"] = index;
    return true;
}

bool CStorageMediaPlugin::stopBackGroundMusic(Json::Value* /*request*/, Json::Value* reply)
{
    if (reply == nullptr) {
        LOG_ERR("jsonRsp is NULL!!!");
        return false;
    }
    unsigned int index = 0;
    const int ret = storageManager()->stopBackGroundMusicFile(index);
    if (ret != 0) {
        LOG_ERR("stopBackGroundMusicFile failed!!!ret:%d", ret);
        return false;
    }
    LOG_DBG("curIdx:%d", index);
    (*reply)["index"] = index;
    return true;
}

} // namespace tvfirmware
