#include "bench/BenchPlatform.h"

#include "platform/SocMiddleware.h"
#include "platform/SocMwLog.h"
#include "plugin/StorageMediaPlugin.h"

#include <random>

#include <unistd.h>

BenchPlatform& benchPlatform()
{
    static BenchPlatform platform;
    return platform;
}

std::vector<FolderFileInfo_s> folderOf(std::size_t count)
{
    std::mt19937 random(20240229); // NOLINT: the same folder in every run
    std::vector<FolderFileInfo_s> files(count);
    for (std::size_t i = 0; i < count; ++i) {
        FolderFileInfo_s& file = files[i];
        file.id = static_cast<int>(i);
        file.type = static_cast<int>(random() % 8);
        file.size = random() * 7ULL;
        file.ctime = "2024-02-29 12:34:56";
        file.title = std::string(4 + random() % 33, 'n') + std::to_string(i % 1000);
        file.name = file.title + ".mp4";
        file.path = "/media/stick/Holiday films/" + file.name;
    }
    return files;
}

void discard(const char* /*source*/, const char* /*name*/, Json::Value& body)
{
    asm volatile("" : : "r"(&body) : "memory");
}

LoadedPlugin::LoadedPlugin()
{
    Plugin_Load();
    Server_PublishNotification_Callback(discard);
}

LoadedPlugin::~LoadedPlugin()
{
    Plugin_Unload();
}

int gSocMwStorageLogLevel = 4;

int SocMwLogLevelGet()
{
    return benchPlatform().logLevel;
}

void SocMwLogPrintEx(const char* /*tag*/, int /*level*/, char* /*format*/, ...)
{
}

extern "C" {

// The directories of the constructor stay out of the measurement, and off the machine.
int access(const char* /*path*/, int /*mode*/) noexcept
{
    return -1;
}

int system(const char* /*command*/)
{
    return 0;
}

} // extern "C"
