#include "platform/SocMwStorageUsbMgr.h"

#include "desktop/middleware/DesktopMiddleware.h"

using desktop::DesktopMiddleware;

namespace {

constexpr int kSourceUsb = 0;

} // namespace

/// All state is the desktop's own, which outlives this object.
struct SocMwStorageUsbMgr::State {};

SocMwStorageUsbMgr::SocMwStorageUsbMgr() = default;

SocMwStorageUsbMgr::~SocMwStorageUsbMgr() = default;

void SocMwStorageUsbMgr::setListener(void (*listener)(int event, void* data))
{
    DesktopMiddleware::instance().events().setListener(listener);
}

int SocMwStorageUsbMgr::enterMmBrowser(Json::Value& session, int srctype)
{
    if (srctype == kSourceUsb) {
        session = DesktopMiddleware::instance().deviceList();
        session["source"] = "USB";
    } else {
        session["devcount"] = 0;
        session["devlist"] = Json::Value(Json::arrayValue);
        session["source"] = "DLNA";
    }
    return 0;
}

int SocMwStorageUsbMgr::closeAllMMPlayer(bool /*keepBackgroundMusic*/)
{
    return 0; // no player runs
}

int SocMwStorageUsbMgr::searchFileType(const std::string& path, FileType type, int itemsPerPage)
{
    return DesktopMiddleware::instance().search().start(path, type, itemsPerPage) ? 0 : -1;
}

int SocMwStorageUsbMgr::clearMediaMap(std::string path)
{
    return DesktopMiddleware::instance().listings().forget(path) ? 0 : -1;
}
