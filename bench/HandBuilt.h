#pragma once

#include "platform/SocMwTypes.h"

#include <json/json.h>

#include <vector>

// The floors: the same JSON as the plugin's, built in the most direct way that jsoncpp has.

inline Json::Value handBuiltEntry(const FolderFileInfo_s& file)
{
    Json::Value entry(Json::objectValue);
    entry["path"] = file.path;
    entry["name"] = file.name;
    entry["ctime"] = file.ctime;
    entry["size"] = static_cast<Json::UInt64>(file.size);
    entry["title"] = file.title;
    entry["type"] = file.type;
    return entry;
}

inline Json::Value handBuiltCompletion(const std::vector<FolderFileInfo_s>& files)
{
    Json::Value list(Json::arrayValue);
    for (const FolderFileInfo_s& file : files) {
        Json::Value entry = handBuiltEntry(file);
        entry["isPhoto360"] = file.isPhoto360 != 0;
        list.append(std::move(entry));
    }
    Json::Value body;
    body["filecount"] = static_cast<Json::UInt>(files.size());
    body["filelst"] = std::move(list);
    body["reqId"] = "1";
    return body;
}
