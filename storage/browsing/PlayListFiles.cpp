#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

namespace {

std::string displayName(const std::string& path)
{
    std::string name = storageManager()->m_folderBrowser.splitFileName(path);
    const std::string directory = storageManager()->m_folderBrowser.getFileDirPath(path);
    if (!name.empty()) {
        return name;
    }
    // A file without a name of its own goes by its directory's; npos + 1 is 0.
    return directory.substr(directory.find_last_of("/\\") + 1);
}

} // namespace

bool CStorageMediaPlugin::getPlayListFile(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    std::string directory;
    if (!readString(*request, "dirpath", directory)) {
        LOG_ERR("unknown path");
        return false;
    }
    LOG_DBG("Path:%s", directory.c_str());
    std::vector<std::pair<std::string, unsigned int>> files;
    const int ret = storageManager()->getPlayListFiles(directory, files);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    Json::Value list(Json::arrayValue);
    for (const auto& [path, type] : files) {
        LOG_DBG("file path:%s, type:%d", path.c_str(), static_cast<int>(type));
        Json::Value entry;
        entry["name"] = displayName(path);
        entry["path"] = path;
        entry["type"] = type;
        list.append(std::move(entry));
    }
    Json::Value answer;
    answer["list"] = std::move(list);
    *reply = std::move(answer);
    return true;
}

} // namespace tvfirmware
