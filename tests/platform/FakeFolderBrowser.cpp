#include "platform/Recording.h"

#include "platform/FolderBrowser.h"

using recording::call;

struct FolderBrowser::State {};

FolderBrowser::FolderBrowser() = default;
FolderBrowser::~FolderBrowser() = default;

int FolderBrowser::chdir(const std::string& path, int itemsPerPage)
{
    return call("chdir", path, itemsPerPage);
}

int FolderBrowser::getOnePageFileInfo(std::vector<FolderFileInfo_s>& entries, page_option& page)
{
    const int ret = call("getOnePageFileInfo", entries, page.pageid, page.type, page.keystr, page.dirpath);
    entries = FakePlatform::instance().files;
    return ret;
}

int FolderBrowser::userCancel()
{
    return call("userCancel");
}

int FolderBrowser::getMediaFileInfo(const std::string& path, media_file_info_s& info)
{
    const int ret = call("getMediaFileInfo", path, info);
    info = FakePlatform::instance().fileInfo;
    return ret;
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, int number)
{
    const int ret = call("getMediaFileInfo", key, files, number);
    files = FakePlatform::instance().files;
    return ret;
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, int number, int asc)
{
    const int ret = call("getMediaFileInfo", key, files, number, asc);
    files = FakePlatform::instance().files;
    return ret;
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files,
                                    std::vector<media_file_info_s>& media, int number)
{
    const int ret = call("getMediaFileInfo", key, files, media, number);
    files = FakePlatform::instance().files;
    media = FakePlatform::instance().media;
    return ret;
}

int FolderBrowser::groupFiles(const std::string& path, GroupFileType type)
{
    return call("groupFiles", path, type);
}

std::string FolderBrowser::getFileDirPath(const std::string& filePath)
{
    call("getFileDirPath", filePath);
    if (FakePlatform::instance().onDirectoryAsked) {
        FakePlatform::instance().onDirectoryAsked();
    }
    const auto& directories = FakePlatform::instance().directories;
    const auto found = directories.find(filePath);
    return found != directories.end() ? found->second : filePath.substr(0, filePath.rfind('/'));
}

std::string FolderBrowser::splitFileName(std::string filePath)
{
    call("splitFileName", filePath);
    const auto& names = FakePlatform::instance().names;
    const auto found = names.find(filePath);
    return found != names.end() ? found->second : "";
}

int FolderBrowser::startThumbnail(unsigned int width, unsigned int height, FileType type)
{
    return call("startThumbnail", width, height, type);
}

int FolderBrowser::appendThumbnailList(int startIndex, int count)
{
    return call("appendThumbnailList", startIndex, count);
}

int FolderBrowser::appendThumbnailList(const std::string& path)
{
    return call("appendThumbnailList", path);
}

int FolderBrowser::stopThumbnail()
{
    return call("stopThumbnail");
}
