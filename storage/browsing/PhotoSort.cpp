#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"
#include "storage/browsing/FileEntry.h"

namespace tvfirmware {

bool CStorageMediaPlugin::photosort(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    int type = 0;
    if (!readInt(*request, "type", type)) {
        LOG_ERR("unknown sort type");
        return false;
    }
    int order = 0;
    if (!readInt(*request, "order", order)) {
        LOG_ERR("unknown sort order");
        return false;
    }
    std::vector<FolderFileInfo_s> photos;
    const int ret = storageManager()->photoSort(type, order != 0, photos);
    if (ret != 0) {
        LOG_ERR("Failed!!! ret:%d", ret);
        return false;
    }
    Json::Value list(Json::arrayValue);
    for (const FolderFileInfo_s& photo : photos) {
        list.append(folderEntry(photo));
        // Whatever the log level, and without a line end.
        std::printf("File name:%s, ctime:%s", photo.name.c_str(), photo.ctime.c_str());
    }
    Json::Value answer;
    answer["filelst"] = std::move(list);
    *reply = std::move(answer);
    return true;
}

} // namespace tvfirmware
