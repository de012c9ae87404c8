#include "platform/SocMwStorageUsbMgr.h"

#include "desktop/base/Log.h"
#include "desktop/boundary/DesktopMiddleware.h"
#include "desktop/browsing/PhotoSort.h"

using desktop::DesktopMiddleware;
using desktop::PhotoOrder;

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

int SocMwStorageUsbMgr::searchFileType(const std::string& path, FileType type, int itemsPerPage)
{
    DesktopMiddleware::instance().requestDropped(desktop::BackgroundRequest::Search);
    return DesktopMiddleware::instance().search().start(path, type, itemsPerPage) ? 0 : -1;
}

int SocMwStorageUsbMgr::photoSort(int sortType, bool order, std::vector<FolderFileInfo_s>& photos)
{
    const desktop::ListingPointer current = DesktopMiddleware::instance().listings().current();
    const bool known = sortType >= static_cast<int>(PhotoOrder::Name) && sortType <= static_cast<int>(PhotoOrder::Type);
    if (current == nullptr || !known) {
        desktop::logLine(desktop::LogLevel::Warning, current == nullptr
                                                         ? "there is no current folder to sort"
                                                         : "photos cannot be sorted by " + std::to_string(sortType));
        return -1;
    }
    if (!sortPhotos(*current, DesktopMiddleware::instance().photoReading(), static_cast<PhotoOrder>(sortType), order,
                    photos)) {
        return -1;
    }
    DesktopMiddleware::instance().shownLists().show(current->directory,
                                                    std::make_shared<std::vector<FolderFileInfo_s>>(photos));
    return 0;
}

int SocMwStorageUsbMgr::getPlayListFiles(std::string path, std::vector<std::pair<std::string, unsigned int>>& files)
{
    const auto paths = DesktopMiddleware::instance().playlists().filesBelow(path);
    if (!paths) {
        return -1;
    }
    for (const std::string& playlist : *paths) {
        files.emplace_back(playlist, FILE_TYPE_PLAYLIST);
    }
    return 0;
}

int SocMwStorageUsbMgr::clearMediaMap(std::string path)
{
    DesktopMiddleware::instance().shownLists().forgetBelow(path);
    return DesktopMiddleware::instance().listings().forget(path) ? 0 : -1;
}
