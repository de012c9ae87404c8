#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

bool CStorageMediaPlugin::SubtitlesetOptions(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string option;
    if (!readString(*request, "option", option)) {
        LOG_ERR("unknown option");
        return false;
    }
    int value = 0;
    if (!readInt(*request, "value", value)) {
        LOG_ERR("unknown option value");
        return false;
    }
    LOG_DBG("option:%s, value:%d", option.c_str(), value);
    const int ret = storageManager()->SubtitleSetOptions(option, value);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    return true;
}

bool CStorageMediaPlugin::optSubtitleStatusSwitch(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    int value = 0;
    if (!readInt(*request, "value", value)) {
        LOG_ERR("unknown option value");
        return false;
    }
    const int ret = storageManager()->optSubtitleStatusSwitch(value); // what it writes back is not reported
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    return true;
}

} // namespace tvfirmware
