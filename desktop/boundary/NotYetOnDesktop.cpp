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
