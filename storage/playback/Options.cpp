#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

bool CStorageMediaPlugin::setOptions(Json::Value* request, Json::Value* reply)
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
    std::string suboption;
    if (!readString(*request, "suboption", suboption)) {
        LOG_ERR("not subtitle set option"); // an error line, yet the command goes on
    }
    int value = 0;
    if (!readInt(*request, "value", value)) {
        LOG_ERR("unknown option value");
        return false;
    }
    int flags = 0;
    if (!readInt(*request, "flags", flags)) {
        LOG_WAR("unknown flags, set default");
    }
    int playAll = 0; // an integer here, unlike in the play commands
    if (!readInt(*request, "playall", playAll)) {
        LOG_WAR("unknown playall, set default");
    }
    LOG_DBG("option:%s, suboptions:%s, value:%d, flags:%d, playall:%d", option.c_str(), suboption.c_str(), value, flags,
            playAll);
    const int ret = storageManager()->setOptions(option, suboption, value, flags, playAll);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    return true;
}

bool CStorageMediaPlugin::getCurAllOptions(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    Json::Value options;
    const int ret = storageManager()->getCurAllOptions(options);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    *reply = std::move(options);
    return true;
}

} // namespace tvfirmware
