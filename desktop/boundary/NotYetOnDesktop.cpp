// Operations of the boundary that the desktop does not offer yet: each says so in the log and fails.

#include "desktop/base/Log.h"

#include "platform/SocMwStorageUsbMgr.h"

namespace {

constexpr int kNotOffered = -38; // as ENOSYS; -1 would say that the operation was tried

int notYet(const char* operation)
{
    desktop::logLine(desktop::LogLevel::Warning, std::string("the desktop does not offer ") + operation + " yet");
    return kNotOffered;
}

} // namespace

int SocMwStorageUsbMgr::playMediaFile(FileType /*type*/, unsigned int /*index*/, unsigned int& /*curIdx*/, bool /*playAll*/,
                                      bool /*resume*/, std::string /*path*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::kiroPlayMediaFile(FileType /*type*/, unsigned int /*index*/, unsigned int& /*curIdx*/,
                                          bool /*playAll*/, bool /*resume*/, std::string /*path*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::stopMediaFile(FileType /*type*/, unsigned int& /*index*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::stopBackGroundMusicFile(unsigned int& /*curIdx*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::dmrPlayPrepare(FileType /*type*/, std::string& /*title*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::isresumePlayMediaFile(FileType /*type*/, unsigned int /*index*/, unsigned int& /*curIdx*/,
                                              bool /*playAll*/, bool& /*resume*/, std::string /*path*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::videoClearResume()
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::keyPlayPause(FileType /*type*/, bool /*play*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::keyPlayPrev(FileType /*type*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::keyPlayNext(FileType /*type*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::keyFastForward(FileType /*type*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::keyFastRewind(FileType /*type*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::setPlayerMode(FileType /*type*/, PlayerModeE /*mode*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::getPlayMode(Json::Value& /*mode*/, int /*mediaType*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::setOptions(std::string /*option*/, std::string /*suboption*/, int /*value*/, int /*flags*/,
                                   int /*playall*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::SubtitleSetOptions(std::string /*option*/, int /*value*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::optSubtitleStatusSwitch(int& /*value*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::getCurAllOptions(Json::Value& /*options*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::getMediaMetadata(meta_data_t& /*meta*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::getbrowsercodec(FileType /*type*/, browser_codec& /*codec*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::repeatModeSet(int /*mode*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::videoPicSizeSet(int /*size*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::videoPicSizeGet(int& /*size*/)
{
    return notYet(__func__);
}

int SocMwStorageUsbMgr::photoRotateSet(bool /*right*/)
{
    return notYet(__func__);
}
