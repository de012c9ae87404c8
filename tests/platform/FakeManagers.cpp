#include "platform/Recording.h"

#include "platform/SocMiddleware.h"

#include <stdexcept>

using recording::call;

namespace {

// Handles are fetched for one call and dropped before the next.
void recordFetch(const std::string& manager)
{
    FakePlatform& platform = FakePlatform::instance();
    platform.record(platform.isHandleHeld() ? manager + " while a handle is held" : manager);
}

} // namespace

struct SocMiddleware::State {};

SocMiddleware::SocMiddleware() = default;
SocMiddleware::~SocMiddleware() = default;

SocMiddleware* SocMiddleware::getInstance()
{
    static SocMiddleware middleware;
    return &middleware;
}

std::shared_ptr<SocMwStorageUsbMgr> SocMiddleware::getStorageUsbMgr()
{
    recordFetch("storage manager");
    if (FakePlatform::instance().failHandles) {
        throw std::runtime_error("no storage manager");
    }
    return FakePlatform::instance().storageManager;
}

std::shared_ptr<SocMwSystemMgr> SocMiddleware::getSystemMgr()
{
    recordFetch("system manager");
    return FakePlatform::instance().systemManager;
}

struct SocMwSystemMgr::State {};

SocMwSystemMgr::SocMwSystemMgr() = default;
SocMwSystemMgr::~SocMwSystemMgr() = default;

int SocMwSystemMgr::getScreenStatus(int* status)
{
    const int ret = call("getScreenStatus", *status);
    *status = FakePlatform::instance().screenStatus;
    return ret;
}

int SocMwSystemMgr::ScreenOff(int off)
{
    return call("ScreenOff", off);
}

struct SocMwStorageUsbMgr::State {};

SocMwStorageUsbMgr::SocMwStorageUsbMgr() = default;
SocMwStorageUsbMgr::~SocMwStorageUsbMgr() = default;

void SocMwStorageUsbMgr::setListener(void (*listener)(int event, void* data))
{
    FakePlatform::instance().listener = listener;
    call("setListener");
    if (FakePlatform::instance().onListener) {
        FakePlatform::instance().onListener();
    }
}

int SocMwStorageUsbMgr::enterMmBrowser(Json::Value& session, int srctype)
{
    const int ret = call("enterMmBrowser", session, srctype);
    session = FakePlatform::instance().json;
    return ret;
}

int SocMwStorageUsbMgr::closeAllMMPlayer(bool keepBackgroundMusic)
{
    return call("closeAllMMPlayer", keepBackgroundMusic);
}

int SocMwStorageUsbMgr::clearMediaMap(std::string path)
{
    return call("clearMediaMap", path);
}

int SocMwStorageUsbMgr::searchFileType(const std::string& path, FileType type, int itemsPerPage)
{
    return call("searchFileType", path, type, itemsPerPage);
}

int SocMwStorageUsbMgr::photoSort(int sortType, bool order, std::vector<FolderFileInfo_s>& photos)
{
    const int ret = call("photoSort", sortType, order, photos);
    photos = FakePlatform::instance().files;
    return ret;
}

int SocMwStorageUsbMgr::getPlayListFiles(std::string path, std::vector<std::pair<std::string, unsigned int>>& files)
{
    const int ret = call("getPlayListFiles", path, files);
    files = FakePlatform::instance().playlists;
    return ret;
}

int SocMwStorageUsbMgr::playMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll, bool resume,
                                      std::string path)
{
    const int ret = call("playMediaFile", type, index, curIdx, playAll, resume, path);
    curIdx = FakePlatform::instance().currentIndex;
    return ret;
}

int SocMwStorageUsbMgr::kiroPlayMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll, bool resume,
                                          std::string path)
{
    const int ret = call("kiroPlayMediaFile", type, index, curIdx, playAll, resume, path);
    curIdx = FakePlatform::instance().currentIndex;
    return ret;
}

int SocMwStorageUsbMgr::stopMediaFile(FileType type, unsigned int& index)
{
    const int ret = call("stopMediaFile", type, index);
    index = FakePlatform::instance().currentIndex;
    return ret;
}

int SocMwStorageUsbMgr::stopBackGroundMusicFile(unsigned int& curIdx)
{
    const int ret = call("stopBackGroundMusicFile", curIdx);
    curIdx = FakePlatform::instance().currentIndex;
    return ret;
}

int SocMwStorageUsbMgr::dmrPlayPrepare(FileType type, std::string& title)
{
    const int ret = call("dmrPlayPrepare", type, title);
    title = FakePlatform::instance().title;
    return ret;
}

int SocMwStorageUsbMgr::isresumePlayMediaFile(FileType type, unsigned int index, unsigned int& curIdx, bool playAll,
                                              bool& resume, std::string path)
{
    const int ret = call("isresumePlayMediaFile", type, index, curIdx, playAll, resume, path);
    curIdx = FakePlatform::instance().currentIndex;
    resume = FakePlatform::instance().resume;
    return ret;
}

int SocMwStorageUsbMgr::videoClearResume()
{
    return call("videoClearResume");
}

int SocMwStorageUsbMgr::keyPlayPause(FileType type, bool play)
{
    return call("keyPlayPause", type, play);
}

int SocMwStorageUsbMgr::keyPlayPrev(FileType type)
{
    return call("keyPlayPrev", type);
}

int SocMwStorageUsbMgr::keyPlayNext(FileType type)
{
    return call("keyPlayNext", type);
}

int SocMwStorageUsbMgr::keyFastForward(FileType type)
{
    return call("keyFastForward", type);
}

int SocMwStorageUsbMgr::keyFastRewind(FileType type)
{
    return call("keyFastRewind", type);
}

int SocMwStorageUsbMgr::setPlayerMode(FileType type, PlayerModeE mode)
{
    return call("setPlayerMode", type, mode);
}

int SocMwStorageUsbMgr::getPlayMode(Json::Value& mode, int mediaType)
{
    const int ret = call("getPlayMode", mode, mediaType);
    mode = FakePlatform::instance().json;
    return ret;
}

int SocMwStorageUsbMgr::setOptions(std::string option, std::string suboption, int value, int flags, int playall)
{
    return call("setOptions", option, suboption, value, flags, playall);
}

int SocMwStorageUsbMgr::SubtitleSetOptions(std::string option, int value)
{
    return call("SubtitleSetOptions", option, value);
}

int SocMwStorageUsbMgr::optSubtitleStatusSwitch(int& value)
{
    const int ret = call("optSubtitleStatusSwitch", value);
    value = FakePlatform::instance().switchWritesBack;
    return ret;
}

int SocMwStorageUsbMgr::getCurAllOptions(Json::Value& options)
{
    const int ret = call("getCurAllOptions", options);
    options = FakePlatform::instance().json;
    return ret;
}

int SocMwStorageUsbMgr::getMediaMetadata(meta_data_t& meta)
{
    const int ret = call("getMediaMetadata", meta.title, meta.size, meta.date, meta.codec, meta.dolby);
    meta = FakePlatform::instance().meta;
    return ret;
}

int SocMwStorageUsbMgr::getbrowsercodec(FileType type, browser_codec& codec)
{
    const int ret = call("getbrowsercodec", type, codec);
    codec = FakePlatform::instance().codec;
    return ret;
}

int SocMwStorageUsbMgr::repeatModeSet(int mode)
{
    return call("repeatModeSet", mode);
}

int SocMwStorageUsbMgr::videoPicSizeSet(int size)
{
    return call("videoPicSizeSet", size);
}

int SocMwStorageUsbMgr::videoPicSizeGet(int& size)
{
    const int ret = call("videoPicSizeGet", size);
    size = FakePlatform::instance().pictureSize;
    return ret;
}

int SocMwStorageUsbMgr::photoRotateSet(bool right)
{
    return call("photoRotateSet", right);
}
