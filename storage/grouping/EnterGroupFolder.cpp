#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

#include <iterator>

namespace tvfirmware {

namespace {

// Wider than the named types: the platform decides what the last two mean.
constexpr int kLastGroupType = 11;

// Rows 6 and 7 are named alike, as in the platform's own log.
constexpr char g_groupTypeStr[10][40] = {
    "GROUP_TYPE_NONE", "GROUP_TYPE_MUSIC", "GROUP_TYPE_GENRE", "GROUP_TYPE_ARTIST", "GROUP_TYPE_ALBUM",
    "GROUP_TYPE_DATE", "GROUP_TYPE_MONTH", "GROUP_TYPE_MONTH", "GROUP_TYPE_YEAR",   "GROUP_TYPE_MAX",
};

const char* groupTypeName(int type)
{
    return type < static_cast<int>(std::size(g_groupTypeStr)) ? g_groupTypeStr[type] : "";
}

} // namespace

bool CStorageMediaPlugin::enterGroupFolder(Json::Value* request, Json::Value* /*reply*/)
{
    if (request == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    AsyncReqNotify& slot = m_requestSlots[SLOT_GROUP];
    if (const char* missing = readRequester(*request, slot)) { // what has been read stays, whatever fails below
        LOG_ERR("unknown %s", missing);
        return false;
    }
    int group = GROUP_TYPE_NONE;
    if (!readInt(*request, "Group", group)) {
        LOG_ERR("unknown Group id");
        return false;
    }
    std::string directory;
    if (!readString(*request, "dirpath", directory) || directory.empty()) {
        LOG_ERR("unknown dirPath");
        return false;
    }
    LOG_DBG("Path:%s, Channleid:%s, gIdx: %d", directory.c_str(), slot.channel.c_str(), group);
    if (group < GROUP_TYPE_NONE || group > kLastGroupType) {
        LOG_ERR("Invailed Group Type:%d", group);
        return false;
    }
    LOG_DBG(" Select Group: %s", groupTypeName(group));
    storageManager()->m_folderBrowser.stopThumbnail();
    LOG_DBG("Path:%s, Tyep:%d", directory.c_str(), group);
    const int ret = storageManager()->m_folderBrowser.groupFiles(directory, static_cast<GroupFileType>(group));
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    return true;
}

} // namespace tvfirmware
