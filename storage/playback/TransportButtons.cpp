#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/playback/MediaTypes.h"

namespace tvfirmware {

namespace {

/// What tells one transport button from another.
struct Button {
    const char* handler; // the name its lines are logged under
    bool (*accepts)(unsigned int type);
    const char* accepted; // what a refused type is not
};

bool acceptsType(const Button& button, unsigned int type)
{
    STORAGE_LOG(button.handler, DBG, "file type:%d", type);
    if (!button.accepts(type)) {
        STORAGE_LOG(button.handler, ERR, "not a %s Type:%d", button.accepted, type);
        return false;
    }
    return true;
}

bool readType(const Button& button, Json::Value* request, const Json::Value* reply, unsigned int& type)
{
    if (request == nullptr || reply == nullptr) {
        STORAGE_LOG(button.handler, ERR, "Params is NULL!!!");
        return false;
    }
    if (!readUInt(*request, "type", type)) {
        STORAGE_LOG(button.handler, ERR, "unknown File Type");
        return false;
    }
    return true;
}

bool succeeded(const Button& button, int ret)
{
    if (ret != 0) {
        STORAGE_LOG(button.handler, ERR, "Failed!!! ret:%d", ret);
    }
    return ret == 0;
}

// The four buttons that carry a type and nothing else.
bool press(const Button& button, int (SocMwStorageUsbMgr::*key)(FileType), Json::Value* request, const Json::Value* reply)
{
    unsigned int type = 0;
    if (!readType(button, request, reply, type) || !acceptsType(button, type)) {
        return false;
    }
    const auto manager = storageManager();
    return succeeded(button, ((*manager).*key)(static_cast<FileType>(type)));
}

} // namespace

bool CStorageMediaPlugin::onPlayPauseButton(Json::Value* request, Json::Value* reply)
{
    const Button button = {__func__, isPlayable, "Playable"};
    unsigned int type = 0;
    if (!readType(button, request, reply, type)) {
        return false;
    }
    bool play = false;
    if (!readBool(*request, "play", play)) {
        LOG_ERR("unknown play Option!!!");
        return false;
    }
    if (!acceptsType(button, type)) {
        return false;
    }
    return succeeded(button, storageManager()->keyPlayPause(static_cast<FileType>(type), play));
}

bool CStorageMediaPlugin::onPrevButton(Json::Value* request, Json::Value* reply)
{
    return press({__func__, isPlayable, "Playable"}, &SocMwStorageUsbMgr::keyPlayPrev, request, reply);
}

bool CStorageMediaPlugin::onNextButton(Json::Value* request, Json::Value* reply)
{
    return press({__func__, isPlayable, "Playable"}, &SocMwStorageUsbMgr::keyPlayNext, request, reply);
}

bool CStorageMediaPlugin::onFastForwardButton(Json::Value* request, Json::Value* reply)
{
    return press({__func__, isSeekable, "Seekable"}, &SocMwStorageUsbMgr::keyFastForward, request, reply);
}

bool CStorageMediaPlugin::onFastRewindButton(Json::Value* request, Json::Value* reply)
{
    return press({__func__, isSeekable, "Seekable"}, &SocMwStorageUsbMgr::keyFastRewind, request, reply);
}

} // namespace tvfirmware
