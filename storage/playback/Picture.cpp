#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

bool CStorageMediaPlugin::VideoPicSizeSet(Json::Value* request, Json::Value* /*reply*/)
{
    if (request == nullptr) {
        LOG_ERR("jsonParams is NULL!!!");
        return false;
    }
    int size = 0;
    if (!readInt(*request, "value", size)) {
        LOG_ERR("unknown videopicsize option");
        return false;
    }
    LOG_DBG("videopicsize:%d", size);
    return storageManager()->videoPicSizeSet(size) == 0;
}

bool CStorageMediaPlugin::VideoPicSizeGet(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    int size = 0;
    if (storageManager()->videoPicSizeGet(size) != 0) {
        return false;
    }
    LOG_DBG("Videopicsize:%d", size);
    Json::Value answer;
    answer["videopicsize"] = size;
    *reply = std::move(answer);
    return true;
}

bool CStorageMediaPlugin::photoRotateSet(Json::Value* request, Json::Value* /*reply*/)
{
    if (request == nullptr) {
        LOG_ERR("jsonParams is NULL!!!");
        return false;
    }
    bool right = false;
    if (!readBool(*request, "rotate", right)) {
        LOG_ERR("unknown rotate option");
        return false;
    }
    LOG_DBG("Set rotate dir:%s", right ? "Right" : "Left");
    return storageManager()->photoRotateSet(right) == 0;
}

} // namespace tvfirmware
