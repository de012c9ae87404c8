#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/browsing/FileEntry.h"

namespace tvfirmware {

namespace {

constexpr int kDefaultNumber = 9;
constexpr int kNoSortDirection = -1;

Json::Value groupReply(Json::Value list)
{
    Json::Value answer;
    answer["filenum"] = list.size();
    answer["filelst"] = std::move(list);
    return answer;
}

} // namespace

bool CStorageMediaPlugin::getGroupListInfo(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string key;
    if (!readString(*request, "keystr", key) || key.empty()) {
        LOG_ERR("unknown Key Str");
        return false;
    }
    int number = kDefaultNumber;
    if (!readInt(*request, "number", number)) {
        LOG_WAR("%s-%d, unknown number, set default:%d", __func__, __LINE__, number);
    }
    int asc = 0;
    if (!readInt(*request, "asc", asc)) {
        LOG_ERR("%s-%d, unknown asc number, check your asc value ", __func__, __LINE__);
        return false;
    }
    m_itemCountPerPage = number;
    storageManager()->m_folderBrowser.stopThumbnail();
    LOG_DBG("Get Key:%s, asc:%d", key.c_str(), asc);

    std::vector<FolderFileInfo_s> files;
    const auto manager = storageManager();
    const int ret = asc == kNoSortDirection ? manager->m_folderBrowser.getMediaFileInfo(key, files, number)
                                            : manager->m_folderBrowser.getMediaFileInfo(key, files, number, asc);
    if (ret != 0) {
        LOG_ERR("Failed but success!!! ret:%d", ret);
        return true; // the host takes a reply without a list for a group it cannot show
    }
    Json::Value list(Json::arrayValue);
    for (const FolderFileInfo_s& file : files) {
        list.append(fileEntry(file));
    }
    *reply = groupReply(std::move(list));
    return true;
}

bool CStorageMediaPlugin::kiroGetGroupListInfo(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string key;
    if (!readString(*request, "keystr", key) || key.empty()) {
        LOG_ERR("unknown Key Str");
        return false;
    }
    int number = kDefaultNumber;
    if (!readInt(*request, "number", number)) {
        LOG_WAR("%s-%d, unknown number, set default:%d", __func__, __LINE__, number);
    }
    m_itemCountPerPage = number;
    storageManager()->m_folderBrowser.stopThumbnail();
    LOG_DBG("Get Key:%s", key.c_str());

    std::vector<FolderFileInfo_s> files;
    std::vector<media_file_info_s> media;
    const int ret = storageManager()->m_folderBrowser.getMediaFileInfo(key, files, media, number);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return true; // as getGroupListInfo
    }
    Json::Value list(Json::arrayValue);
    for (std::size_t i = 0; i < files.size(); ++i) { // the browser returns no fewer media than files
        Json::Value entry = fileEntry(files[i]);
        entry["duration"] = static_cast<Json::UInt>(media[i].duration);
        entry["artist"] = media[i].music.artist;
        list.append(std::move(entry));
    }
    *reply = groupReply(std::move(list));
    return true;
}

bool CStorageMediaPlugin::getSuperdemoGroupListInfo(Json::Value* /*request*/, Json::Value* reply)
{
    if (reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    *reply = groupReply(Json::Value(Json::arrayValue)); // sets in a store show an empty list
    return true;
}

} // namespace tvfirmware
