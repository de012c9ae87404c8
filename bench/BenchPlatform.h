#pragma once

#include "platform/PluginHost.h"
#include "platform/SocMwTypes.h"

#include <vector>

/// A platform that costs next to nothing: operations succeed at once, with the answers set here.
struct BenchPlatform {
    int logLevel = 4; ///< 4: nothing is printed
    std::vector<FolderFileInfo_s> files;
};

BenchPlatform& benchPlatform();

/// @p count entries of a folder as a stick has them: fixed seed, names of 8 to 40 bytes.
std::vector<FolderFileInfo_s> folderOf(std::size_t count);

/// A host that looks at the body and throws it away.
void discard(const char* source, const char* name, Json::Value& body);

/// The plugin, loaded for as long as the object lives.
class LoadedPlugin {
public:
    LoadedPlugin();
    ~LoadedPlugin();
    LoadedPlugin(const LoadedPlugin&) = delete;
    LoadedPlugin& operator=(const LoadedPlugin&) = delete;
};
