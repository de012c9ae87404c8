#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/browsing/FileEntry.h"

namespace tvfirmware {

namespace {

// Lists that a page request can name.
constexpr int kListDirectory = 0;
constexpr int kListKey = 2;

} // namespace

bool CStorageMediaPlugin::setItemNumPerPage(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    int number = 0;
    if (!readInt(*request, "number", number)) {
        LOG_ERR("unknown number");
        return false;
    }
    LOG_DBG("%d Item per page!!!", number);
    m_itemCountPerPage = number;
    m_pagingPosition = 0;
    return true;
}

bool CStorageMediaPlugin::getOnePageFiles(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    page_option page;
    if (!readInt(*request, "pageid", page.pageid)) {
        LOG_ERR("unknown pageid");
        return false;
    }
    if (!readInt(*request, "type", page.type)) {
        LOG_ERR("unknown type");
        return false;
    }
    if (!readString(*request, "keystr", page.keystr) && page.type == kListKey) {
        LOG_ERR("unknown keystr");
        return false;
    }
    // Unlike a missing key, a missing directory is only worth a warning.
    if (!readString(*request, "dirpath", page.dirpath) && page.type == kListDirectory) {
        LOG_WAR("unknown dirpath");
    }
    LOG_INFO("page:%d, type:%d, strkey:%s, dirpath:%s", page.pageid, page.type, page.keystr.c_str(), page.dirpath.c_str());

    std::vector<FolderFileInfo_s> files;
    const int ret = storageManager()->m_folderBrowser.getOnePageFileInfo(files, page);
    if (ret == -1) { // any other value, negative ones too, is success
        LOG_ERR("getOnePageFileInfo failed!!!:%d", ret);
        return false;
    }
    Json::Value list(Json::arrayValue);
    for (const FolderFileInfo_s& file : files) {
        list.append(folderEntry(file));
        LOG_DBG("File name:%s, ctime:%s", file.name.c_str(), file.ctime.c_str());
    }
    Json::Value answer;
    answer["filecount"] = static_cast<Json::UInt>(files.size());
    answer["filelst"] = std::move(list);
    *reply = std::move(answer);
    return true;
}

void CStorageMediaPlugin::GetPageParams(Json::Value* request, PageData& page)
{
    page = PageData();
    if (request == nullptr) {
        return;
    }
    readInt(*request, "pageIndex", page.pageIndex);
    readInt(*request, "pageSize", page.pageSize);
    readInt(*request, "sortType", page.sortType);
}

std::string CStorageMediaPlugin::GetParentPath(std::string path)
{
    const std::string::size_type end = path.rfind('/');
    const std::string parent = path.substr(0, end);
    const bool onlySlashCut = parent.size() + 1 == path.size();
    return onlySlashCut ? parent.substr(0, parent.rfind('/')) : parent;
}

} // namespace tvfirmware
