#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/playback/MediaTypes.h"

namespace tvfirmware {

namespace {

using PlayOperation = int (SocMwStorageUsbMgr::*)(FileType, unsigned int, unsigned int&, bool, bool, std::string);

// The two play commands differ in the manager's operation and in the name they log under.
bool play(const char* handler, PlayOperation operation, Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        STORAGE_LOG(handler, ERR, "Params is NULL!!!");
        return false;
    }
    std::string path;
    readString(*request, "dirpath", path); // without one the manager plays from its current folder
    STORAGE_LOG(handler, DBG, "dirpath :%s", path.c_str());
    unsigned int index = 0;
    if (!readUInt(*request, "index", index)) {
        STORAGE_LOG(handler, ERR, "unknown file index");
        return false;
    }
    unsigned int type = 0;
    if (!readUInt(*request, "type", type)) {
        STORAGE_LOG(handler, ERR, "unknown File Type");
        return false;
    }
    bool playAll = false;
    if (!readBool(*request, "playall", playAll)) {
        STORAGE_LOG(handler, ERR, "unknown Play mode");
        return false;
    }
    bool resume = false;
    if (!readBool(*request, "resume", resume)) {
        STORAGE_LOG(handler, ERR, "unknown resume option, set restart!");
    }
    STORAGE_LOG(handler, DBG, "file type:%d, index:%d, bPlayAll:%d", type, index, playAll);
    if (!isPlayable(type)) {
        STORAGE_LOG(handler, ERR, "unknown unPlayable Type:%d", type);
        return false;
    }
    unsigned int currentIndex = 0;
    const auto manager = storageManager();
    const int ret = ((*manager).*operation)(static_cast<FileType>(type), index, currentIndex, playAll, resume, path);
    if (ret != 0) {
        STORAGE_LOG(handler, ERR, "Failed!!! ret:%d", ret);
        return false;
    }
    (*reply)["count"] = currentIndex; // an index, whatever the key says
    return true;
}

} // namespace

bool CStorageMediaPlugin::playMediaFile(Json::Value* request, Json::Value* reply)
{
    return play(__func__, &SocMwStorageUsbMgr::playMediaFile, request, reply);
}

bool CStorageMediaPlugin::kiroPlayMediaFile(Json::Value* request, Json::Value* reply)
{
    return play(__func__, &SocMwStorageUsbMgr::kiroPlayMediaFile, request, reply);
}

bool CStorageMediaPlugin::dmrPlayFile(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    int type = 0;
    if (!readInt(*request, "type", type)) {
        LOG_ERR("unknown type");
        return false;
    }
    LOG_INFO("File Type:%d", type);
    std::string title;
    const int ret = storageManager()->dmrPlayPrepare(static_cast<FileType>(type), title);
    if (ret != 0) {
        LOG_ERR("Dmr Play fialed!!!ret:%d", ret);
        return false;
    }
    LOG_DBG("File Title:%s", title.c_str());
    (*reply)["title"] = title;
    return true;
}

bool CStorageMediaPlugin::playPlayListFile(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string list;
    if (!readString(*request, "lstfile", list)) {
        LOG_ERR("unknown file lstfile");
        return false;
    }
    std::string file;
    if (!readString(*request, "file", file)) {
        LOG_ERR("unknown file file");
        return false;
    }
    // Checked and acknowledged only: the host starts playback itself.
    LOG_DBG("list:%s, play file:%s", list.c_str(), file.c_str());
    return true;
}

bool CStorageMediaPlugin::folderAppendPlayListAndPlay(Json::Value* request, Json::Value* /*reply*/)
{
    if (request == nullptr) {
        LOG_ERR("jsonParams is NULL!!!");
        return false;
    }
    return true; // acknowledged only
}

} // namespace tvfirmware
