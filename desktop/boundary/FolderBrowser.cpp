#include "platform/FolderBrowser.h"

#include "desktop/base/Log.h"
#include "desktop/boundary/DesktopMiddleware.h"
#include "desktop/metadata/EntryDescription.h"

#include <algorithm>
#include <optional>

using desktop::BackgroundRequest;
using desktop::DesktopMiddleware;
using desktop::FolderListings;

namespace {

constexpr int kOk = 0;
constexpr int kFailed = -1;

// Lists that a page request can name.
constexpr int kListDirectory = 0;
constexpr int kListCurrent = 1;
constexpr int kListGroup = 2;

FolderListings& listings()
{
    return DesktopMiddleware::instance().listings();
}

desktop::Thumbnails& thumbnails()
{
    return DesktopMiddleware::instance().thumbnails();
}

void dropped(BackgroundRequest kind)
{
    DesktopMiddleware::instance().requestDropped(kind);
}

desktop::ShownLists& shownLists()
{
    return DesktopMiddleware::instance().shownLists();
}

desktop::EntryList listOf(const page_option& page)
{
    switch (page.type) {
    case kListDirectory:
        return shownLists().read(page.dirpath);
    case kListCurrent:
        return shownLists().current();
    default:
        return nullptr;
    }
}

desktop::Grouping& grouping()
{
    return DesktopMiddleware::instance().grouping();
}

int listGroup(const std::string& key, std::vector<FolderFileInfo_s>& files, int number, desktop::GroupOrder order)
{
    const auto entries = grouping().list(key, number, order);
    if (!entries) {
        return kFailed;
    }
    for (const desktop::MediaEntry& entry : *entries) {
        files.push_back(entry.file);
    }
    shownLists().showGroup(key);
    return kOk;
}

int pageGroup(std::vector<FolderFileInfo_s>& entries, const page_option& page)
{
    auto files = grouping().page(page.keystr, page.pageid);
    if (!files) {
        return kFailed;
    }
    entries = std::move(*files);
    shownLists().showGroup(page.keystr);
    return kOk;
}

} // namespace

/// All state is the desktop's own, which outlives this object.
struct FolderBrowser::State {};

FolderBrowser::FolderBrowser() = default;

FolderBrowser::~FolderBrowser() = default;

int FolderBrowser::chdir(const std::string& path, int itemsPerPage)
{
    dropped(BackgroundRequest::DirectoryChange);
    if (!listings().change(path, itemsPerPage)) {
        return kFailed;
    }
    shownLists().showCurrent(path);
    return kOk;
}

int FolderBrowser::getOnePageFileInfo(std::vector<FolderFileInfo_s>& entries, page_option& page)
{
    if (page.pageid < 0) {
        desktop::logLine(desktop::LogLevel::Warning, "pages are counted from 0, not " + std::to_string(page.pageid));
        return kFailed;
    }
    if (page.type == kListGroup) {
        return pageGroup(entries, page);
    }
    const desktop::EntryList list = listOf(page);
    if (list == nullptr) {
        desktop::logLine(desktop::LogLevel::Warning, "no page of list " + std::to_string(page.type));
        return kFailed;
    }
    if (page.type == kListDirectory) {
        shownLists().show(page.dirpath, list);
    } else {
        shownLists().showCurrent(listings().current()->directory);
    }
    entries = desktop::cutPage(*list, page.pageid, listings().itemsPerPage());
    return kOk;
}

int FolderBrowser::userCancel()
{
    listings().cancel();
    DesktopMiddleware::instance().search().cancel();
    grouping().cancel();
    dropped(BackgroundRequest::DirectoryChange);
    dropped(BackgroundRequest::Search);
    dropped(BackgroundRequest::Grouping);
    return kOk;
}

int FolderBrowser::getMediaFileInfo(const std::string& path, media_file_info_s& info)
{
    return listings().describe(path, info) ? kOk : kFailed;
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, int number)
{
    return listGroup(key, files, number, desktop::GroupOrder::AsWalked);
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, int number, int asc)
{
    const auto order = asc != 0 ? desktop::GroupOrder::NameAscending : desktop::GroupOrder::NameDescending;
    return listGroup(key, files, number, order);
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files,
                                    std::vector<media_file_info_s>& media, int number)
{
    const auto entries = grouping().list(key, number, desktop::GroupOrder::AsWalked);
    if (!entries) {
        return kFailed;
    }
    for (const desktop::MediaEntry& entry : *entries) {
        const FolderFileInfo_s& file = entry.file;
        files.push_back(file);
        media.push_back(desktop::describeMedia(file.path, static_cast<FileType>(file.type), file.title, entry.metadata));
    }
    shownLists().showGroup(key);
    return kOk;
}

int FolderBrowser::groupFiles(const std::string& path, GroupFileType type)
{
    dropped(BackgroundRequest::Grouping);
    return grouping().start(path, type) ? kOk : kFailed;
}

std::string FolderBrowser::getFileDirPath(const std::string& filePath)
{
    return listings().directoryOf(filePath);
}

int FolderBrowser::appendThumbnailList(int startIndex, int count)
{
    if (thumbnails().append(shownLists().current(), startIndex, count)) {
        return kOk;
    }
    // A request that is refused here has taken the place of the one before already: the answers would bear its marks.
    stopThumbnail();
    return kFailed;
}

int FolderBrowser::appendThumbnailList(const std::string& path)
{
    thumbnails().append(path);
    return kOk;
}

int FolderBrowser::startThumbnail(unsigned int width, unsigned int height, FileType type)
{
    dropped(BackgroundRequest::Thumbnails);
    return thumbnails().start(width, height, type) ? kOk : kFailed;
}

int FolderBrowser::stopThumbnail()
{
    thumbnails().stop();
    dropped(BackgroundRequest::Thumbnails);
    return kOk;
}

std::string FolderBrowser::splitFileName(std::string filePath)
{
    // A name that is all extension shows nothing.
    const std::string name = desktop::lastName(filePath);
    return name.substr(0, std::min(name.rfind('.'), name.size()));
}
