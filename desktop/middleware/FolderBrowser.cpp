#include "platform/FolderBrowser.h"

#include "desktop/middleware/DesktopMiddleware.h"
#include "desktop/middleware/EntryFacts.h"
#include "desktop/middleware/Log.h"
#include "desktop/middleware/MediaTypes.h"
#include "desktop/middleware/NameEncoding.h"

using desktop::DesktopMiddleware;
using desktop::FolderListings;

namespace {

constexpr int kOk = 0;
constexpr int kFailed = -1;

// Lists that a page request can name.
constexpr int kListDirectory = 0;
constexpr int kListCurrent = 1;

FolderListings& listings()
{
    return DesktopMiddleware::instance().listings();
}

desktop::ListingPointer listingOf(const page_option& page)
{
    switch (page.type) {
    case kListDirectory:
        return listings().of(page.dirpath);
    case kListCurrent:
        return listings().current();
    default:
        return nullptr;
    }
}

std::string nameOf(const std::string& path)
{
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0
}

} // namespace

/// All state is the desktop's own, which outlives this object.
struct FolderBrowser::State {};

FolderBrowser::FolderBrowser() = default;

FolderBrowser::~FolderBrowser() = default;

int FolderBrowser::chdir(const std::string& path, int itemsPerPage)
{
    return listings().change(path, itemsPerPage) ? kOk : kFailed;
}

int FolderBrowser::getOnePageFileInfo(std::vector<FolderFileInfo_s>& entries, page_option& page)
{
    if (page.pageid < 0) {
        desktop::logLine(desktop::LogLevel::Warning, "pages are counted from 0, not " + std::to_string(page.pageid));
        return kFailed;
    }
    const desktop::ListingPointer listing = listingOf(page);
    if (listing == nullptr) {
        desktop::logLine(desktop::LogLevel::Warning, "no page of list " + std::to_string(page.type));
        return kFailed;
    }
    entries = cutPage(*listing, page.pageid, listings().itemsPerPage());
    return kOk;
}

int FolderBrowser::userCancel()
{
    listings().cancel();
    return kOk;
}

int FolderBrowser::getMediaFileInfo(const std::string& path, media_file_info_s& info)
{
    const desktop::UniqueFd pinned = listings().pin(path);
    struct stat status = {};
    if (!pinned || fstat(pinned.get(), &status) != 0) {
        return kFailed;
    }
    const std::string name = desktop::decodeName(nameOf(path));
    info = media_file_info_s();
    info.path = path;
    info.title = desktop::encodeName(desktop::nameWithoutExtension(name));
    if (S_ISDIR(status.st_mode)) {
        info.type = FILE_TYPE_FOLDER;
    } else if (S_ISREG(status.st_mode)) {
        info.type = desktop::regularFileType(name, static_cast<std::uint64_t>(status.st_size), pinned.get());
    }
    return kOk;
}

std::string FolderBrowser::getFileDirPath(const std::string& filePath)
{
    return listings().directoryOf(filePath);
}

std::string FolderBrowser::splitFileName(std::string filePath)
{
    return nameOf(filePath);
}
