// What the storage manager does of what plays: its options, and what is known of it.

#include "desktop/boundary/DesktopMiddleware.h"
#include "desktop/playback/CodecDescription.h"

#include "platform/SocMwStorageUsbMgr.h"

using desktop::DesktopMiddleware;

namespace {

constexpr int kOk = 0;
constexpr int kFailed = -1;
constexpr const char* kVideo = "video";
constexpr const char* kPictureSize = "picsize";

desktop::PlayOptions& options()
{
    return DesktopMiddleware::instance().playOptions();
}

int status(bool done)
{
    return done ? kOk : kFailed;
}

std::string titleOf(const desktop::CurrentMedium& medium)
{
    return desktop::titleOf(medium.item, medium.facts);
}

} // namespace

int SocMwStorageUsbMgr::setOptions(std::string option, std::string suboption, int value, int /*flags*/, int /*playall*/)
{
    return status(options().set(option, suboption, value));
}

int SocMwStorageUsbMgr::SubtitleSetOptions(std::string option, int value)
{
    return status(options().set("subtitle", option, value));
}

int SocMwStorageUsbMgr::optSubtitleStatusSwitch(int& value)
{
    if (value != 0 && value != 1) {
        return kFailed;
    }
    options().showSubtitles(value == 1);
    return kOk;
}

int SocMwStorageUsbMgr::getCurAllOptions(Json::Value& all)
{
    all = options().all();
    return kOk;
}

int SocMwStorageUsbMgr::videoPicSizeSet(int size)
{
    return status(options().set(kVideo, kPictureSize, size));
}

int SocMwStorageUsbMgr::videoPicSizeGet(int& size)
{
    size = options().value(kVideo, kPictureSize);
    return kOk;
}

int SocMwStorageUsbMgr::photoRotateSet(bool right)
{
    return status(options().rotatePhoto(right));
}

int SocMwStorageUsbMgr::getMediaMetadata(meta_data_t& meta)
{
    const auto medium = DesktopMiddleware::instance().playback().current();
    if (!medium) {
        return kFailed;
    }
    meta = desktop::describeMedium(medium->item.kind, titleOf(*medium), medium->item.entry, medium->facts);
    return kOk;
}

int SocMwStorageUsbMgr::getbrowsercodec(FileType type, browser_codec& codec)
{
    const auto medium = DesktopMiddleware::instance().playback().current(type);
    if (!medium) {
        return kFailed;
    }
    codec = desktop::describeCodecs(type, titleOf(*medium), medium->facts);
    return kOk;
}
