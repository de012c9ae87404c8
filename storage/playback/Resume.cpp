#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/playback/MediaTypes.h"

namespace tvfirmware {

bool CStorageMediaPlugin::isVideoFileResumeable(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string path;
    if (!readString(*request, "dirpath", path)) {
        LOG_WAR("unknown file dirpath");
    }
    LOG_DBG("dirpath :%s", path.c_str());
    unsigned int index = 0;
    if (!readUInt(*request, "index", index)) {
        LOG_ERR("unknown file index");
        return false;
    }
    unsigned int type = 0;
    if (!readUInt(*request, "type", type)) {
        LOG_ERR("unknown File Type");
        return false;
    }
    bool playAll = false;
    if (!readBool(*request, "playall", playAll)) {
        LOG_ERR("unknown Play mode");
        return false;
    }
    if (!isPlayable(type)) { // not video alone, in spite of the command's name
        LOG_ERR("unknown unPlayable Type:%d", type);
        return false;
    }
    unsigned int currentIndex = 0;
    bool resume = false;
    const int ret =
        storageManager()->isresumePlayMediaFile(static_cast<FileType>(type), index, currentIndex, playAll, resume, path);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    (*reply)["count"] = currentIndex; // an index, as in the play commands
    (*reply)["resume"] = resume;
    return true;
}

bool CStorageMediaPlugin::videoClearResume(Json::Value* /*request*/, Json::Value* /*reply*/)
{
    return storageManager()->videoClearResume() == 0;
}

} // namespace tvfirmware
