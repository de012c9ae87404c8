#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/browsing/FileEntry.h"

namespace tvfirmware {

namespace {

constexpr int kDefaultNumber = 9;
constexpr int kNoSortDirection = -1;

/// What both lists are asked for.
struct GroupPage {
    std::string key;
    int number = kDefaultNumber;
};

bool readGroupPage(const char* handler, Json::Value* request, const Json::Value* reply, GroupPage& wanted)
{
    if (request == nullptr || reply == nullptr) {
        STORAGE_LOG(handler, ERR, "Params is NULL!!!");
        return false;
    }
    if (!readString(*request, "keystr", wanted.key) || wanted.key.empty()) {
        STORAGE_LOG(handler, ERR, "unknown Key Str");
        return false;
    }
    if (!readInt(*request, "number", wanted.number)) {
        STORAGE_LOG(handler, WAR, "%s-%d, unknown number, set default:%d", handler, __LINE__, wanted.number);
    }
    return true;
}

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
    GroupPage wanted;
    if (!readGroupPage(__func__, request, reply, wanted)) {
        return false;
    }
    int asc = 0;
    if (!readInt(*request, "asc", asc)) {
        LOG_ERR("%s-%d, unknown asc number, check your asc value ", __func__, __LINE__);
        return false;
    }
    m_itemCountPerPage = wanted.number;
    storageManager()->m_folderBrowser.stopThumbnail();
    LOG_DBG("Get Key:%s, asc:%d", wanted.key.c_str(), asc);

    std::vector<FolderFileInfo_s> files;
    const auto manager = storageManager();
    const int ret = asc == kNoSortDirection
                        ? manager->m_folderBrowser.getMediaFileInfo(wanted.key, files, wanted.number)
                        : manager->m_folderBrowser.getMediaFileInfo(wanted.key, files, wanted.number, asc);
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
    GroupPage wanted;
    if (!readGroupPage(__func__, request, reply, wanted)) {
        return false;
    }
    m_itemCountPerPage = wanted.number;
    storageManager()->m_folderBrowser.stopThumbnail();
    LOG_DBG("Get Key:%s", wanted.key.c_str());

    std::vector<FolderFileInfo_s> files;
    std::vector<media_file_info_s> media;
    const int ret = storageManager()->m_folderBrowser.getMediaFileInfo(wanted.key, files, media, wanted.number);
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
