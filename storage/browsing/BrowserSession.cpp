#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

namespace {

constexpr int kSourceUsb = 0;
constexpr int kSourceDlna = 1;

// A refused entry is silent: the host learns of it from the result alone.
bool enterBrowser(int source, Json::Value& reply)
{
    Json::Value session;
    if (storageManager()->enterMmBrowser(session, source) != 0) {
        return false;
    }
    reply = std::move(session);
    return true;
}

} // namespace

bool CStorageMediaPlugin::enterMmBrowser(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    LOG_DBG("Enter MM Browser");
    int source = kSourceUsb;
    if (!readInt(*request, "srctype", source)) {
        LOG_WAR("unknown srctype, set default: %d", source);
    }
    LOG_DBG("Enter MM Browser Source: %s", source == kSourceUsb ? "USB" : "DLNA");
    return enterBrowser(source, *reply);
}

bool CStorageMediaPlugin::dlnaEnterMmBrowser(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    return enterBrowser(kSourceDlna, *reply);
}

bool CStorageMediaPlugin::closeMMBroswer(Json::Value* /*request*/, Json::Value* /*reply*/)
{
    const int ret = storageManager()->closeAllMMPlayer(false);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    return true;
}

bool CStorageMediaPlugin::userCancel(Json::Value* /*request*/, Json::Value* /*reply*/)
{
    const int ret = storageManager()->m_folderBrowser.userCancel();
    if (ret != 0) {
        LOG_ERR("user cancel failed , result=%d", ret);
        return false;
    }
    return true;
}

bool CStorageMediaPlugin::clearMediaMap(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string directory;
    if (!readString(*request, "dirpath", directory)) {
        LOG_ERR("unknown dirpath");
        return false;
    }
    LOG_DBG("clear Media map: %s ...", directory.c_str());
    if (storageManager()->clearMediaMap(directory) != 0) {
        LOG_ERR("clear Media map: %s failed!", directory.c_str());
        return false;
    }
    return true;
}

} // namespace tvfirmware
