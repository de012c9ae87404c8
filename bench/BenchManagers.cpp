#include "bench/BenchPlatform.h"

#include "platform/SocMiddleware.h"

// The operations that are measured answer; the others are there because the library is loaded whole.

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
    static const auto manager = std::make_shared<SocMwStorageUsbMgr>();
    return manager;
}

std::shared_ptr<SocMwSystemMgr> SocMiddleware::getSystemMgr()
{
    static const auto manager = std::make_shared<SocMwSystemMgr>();
    return manager;
}

struct SocMwSystemMgr::State {};
SocMwSystemMgr::SocMwSystemMgr() = default;
SocMwSystemMgr::~SocMwSystemMgr() = default;
int SocMwSystemMgr::getScreenStatus(int*)
{
    return 0;
}
int SocMwSystemMgr::ScreenOff(int)
{
    return 0;
}

struct FolderBrowser::State {};
FolderBrowser::FolderBrowser() = default;
FolderBrowser::~FolderBrowser() = default;
int FolderBrowser::chdir(const std::string&, int)
{
    return 0;
}
int FolderBrowser::userCancel()
{
    return 0;
}
int FolderBrowser::getMediaFileInfo(const std::string&, media_file_info_s&)
{
    return 0;
}
int FolderBrowser::groupFiles(const std::string&, GroupFileType)
{
    return 0;
}
std::string FolderBrowser::splitFileName(std::string)
{
    return {};
}
int FolderBrowser::startThumbnail(unsigned int, unsigned int, FileType)
{
    return 0;
}
int FolderBrowser::appendThumbnailList(int, int)
{
    return 0;
}
int FolderBrowser::appendThumbnailList(const std::string&)
{
    return 0;
}
int FolderBrowser::stopThumbnail()
{
    return 0;
}

std::string FolderBrowser::getFileDirPath(const std::string& filePath)
{
    return filePath.substr(0, filePath.rfind('/'));
}

int FolderBrowser::getOnePageFileInfo(std::vector<FolderFileInfo_s>& entries, page_option&)
{
    entries = benchPlatform().files;
    return 0;
}

int FolderBrowser::getMediaFileInfo(const std::string&, std::vector<FolderFileInfo_s>& files, int)
{
    files = benchPlatform().files;
    return 0;
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files, int number, int)
{
    return getMediaFileInfo(key, files, number);
}

int FolderBrowser::getMediaFileInfo(const std::string& key, std::vector<FolderFileInfo_s>& files,
                                    std::vector<media_file_info_s>& media, int number)
{
    media.resize(benchPlatform().files.size());
    return getMediaFileInfo(key, files, number);
}

struct SocMwStorageUsbMgr::State {};
SocMwStorageUsbMgr::SocMwStorageUsbMgr() = default;
SocMwStorageUsbMgr::~SocMwStorageUsbMgr() = default;
void SocMwStorageUsbMgr::setListener(void (*)(int, void*))
{
}
int SocMwStorageUsbMgr::enterMmBrowser(Json::Value&, int)
{
    return 0;
}
int SocMwStorageUsbMgr::closeAllMMPlayer(bool)
{
    return 0;
}
int SocMwStorageUsbMgr::clearMediaMap(std::string)
{
    return 0;
}
int SocMwStorageUsbMgr::searchFileType(const std::string&, FileType, int)
{
    return 0;
}
int SocMwStorageUsbMgr::photoSort(int, bool, std::vector<FolderFileInfo_s>&)
{
    return 0;
}
int SocMwStorageUsbMgr::getPlayListFiles(std::string, std::vector<std::pair<std::string, unsigned int>>&)
{
    return 0;
}
int SocMwStorageUsbMgr::playMediaFile(FileType, unsigned int, unsigned int&, bool, bool, std::string)
{
    return 0;
}
int SocMwStorageUsbMgr::kiroPlayMediaFile(FileType, unsigned int, unsigned int&, bool, bool, std::string)
{
    return 0;
}
int SocMwStorageUsbMgr::stopMediaFile(FileType, unsigned int&)
{
    return 0;
}
int SocMwStorageUsbMgr::stopBackGroundMusicFile(unsigned int&)
{
    return 0;
}
int SocMwStorageUsbMgr::dmrPlayPrepare(FileType, std::string&)
{
    return 0;
}
int SocMwStorageUsbMgr::isresumePlayMediaFile(FileType, unsigned int, unsigned int&, bool, bool&, std::string)
{
    return 0;
}
int SocMwStorageUsbMgr::videoClearResume()
{
    return 0;
}
int SocMwStorageUsbMgr::keyPlayPause(FileType, bool)
{
    return 0;
}
int SocMwStorageUsbMgr::keyPlayPrev(FileType)
{
    return 0;
}
int SocMwStorageUsbMgr::keyPlayNext(FileType)
{
    return 0;
}
int SocMwStorageUsbMgr::keyFastForward(FileType)
{
    return 0;
}
int SocMwStorageUsbMgr::keyFastRewind(FileType)
{
    return 0;
}
int SocMwStorageUsbMgr::setPlayerMode(FileType, PlayerModeE)
{
    return 0;
}
int SocMwStorageUsbMgr::getPlayMode(Json::Value&, int)
{
    return 0;
}
int SocMwStorageUsbMgr::setOptions(std::string, std::string, int, int, int)
{
    return 0;
}
int SocMwStorageUsbMgr::SubtitleSetOptions(std::string, int)
{
    return 0;
}
int SocMwStorageUsbMgr::optSubtitleStatusSwitch(int&)
{
    return 0;
}
int SocMwStorageUsbMgr::getCurAllOptions(Json::Value&)
{
    return 0;
}
int SocMwStorageUsbMgr::getMediaMetadata(meta_data_t&)
{
    return 0;
}
int SocMwStorageUsbMgr::getbrowsercodec(FileType, browser_codec&)
{
    return 0;
}
int SocMwStorageUsbMgr::repeatModeSet(int)
{
    return 0;
}
int SocMwStorageUsbMgr::videoPicSizeSet(int)
{
    return 0;
}
int SocMwStorageUsbMgr::videoPicSizeGet(int&)
{
    return 0;
}
int SocMwStorageUsbMgr::photoRotateSet(bool)
{
    return 0;
}
