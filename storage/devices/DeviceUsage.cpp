#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/RequestKeys.h"

#include <sys/vfs.h>

#include <limits>

namespace tvfirmware {

namespace {

struct Unit {
    unsigned long long size; // bytes
    const char* name;
};

constexpr Unit kGigabyte = {1ULL << 30, "GB"};
constexpr Unit kMegabyte = {1ULL << 20, "MB"};
constexpr Unit kKilobyte = {1ULL << 10, "KB"};

// The value passes through a float: very large sizes lose digits, and the host shows them so.
float inUnit(unsigned long long size, const Unit& unit)
{
    return static_cast<float>(static_cast<double>(size) / static_cast<double>(unit.size));
}

// Truncated, saturated to 32 bits (nothing in use of nothing counts as 0), and of that the low 8 bits.
unsigned char usedPercent(unsigned long long used, unsigned long long total)
{
    constexpr double kMost = std::numeric_limits<unsigned int>::max();
    const double percent = static_cast<double>(used) / static_cast<double>(total) * 100.0;
    if (percent >= kMost) {
        return std::numeric_limits<unsigned char>::max();
    }
    const unsigned int whole = percent > 0.0 ? static_cast<unsigned int>(percent) : 0U;
    return static_cast<unsigned char>(whole);
}

std::string percentText(unsigned char percent)
{
    char text[5] = {};
    std::snprintf(text, sizeof text, "%02d%c", percent, '%');
    return text;
}

} // namespace

bool CStorageMediaPlugin::getDeviceUsage(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("jsonParams is NULL!!!");
        return false;
    }
    std::string path;
    if (!readString(*request, "path", path) || path.empty()) {
        LOG_ERR("unknown Path");
        return false;
    }
    LOG_DBG("path:%s", path.c_str());

    struct statfs fs = {};
    const int ret = statfs(path.c_str(), &fs);
    if (ret != 0) {
        LOG_ERR("statfs ret:%d", ret);
        return false;
    }
    // The counts are 64 bits wide on every television, long or not.
    const unsigned long long blocks = fs.f_blocks;
    const unsigned long long freeBlocks = fs.f_bfree;
    LOG_DBG("f_bsize:%u, f_blocks:%llu, f_bfree:%llu, type:0x%x", static_cast<unsigned int>(fs.f_bsize), blocks, freeBlocks,
            static_cast<unsigned int>(fs.f_type));

    const auto blockSize = static_cast<unsigned long long>(static_cast<long long>(fs.f_bsize));
    const unsigned long long total = blockSize * blocks;
    const unsigned long long free = blockSize * freeBlocks;
    const unsigned long long used = total - free;
    LOG_DBG("totalSizeByte:%llu, freeSizeByte:%llu, usedSizeByte:%llu", total, free, used);

    const std::string totalText = sizeconver(total);
    const std::string freeText = sizeconver(free);
    const std::string usedText = sizeconver(used);
    const std::string usedShare = percentText(usedPercent(used, total));
    LOG_DBG("%s Usage Info:", path.c_str());
    LOG_DBG("Total: %s, Used:%s, Free:%s, usedPer: %s", totalText.c_str(), usedText.c_str(), freeText.c_str(),
            usedShare.c_str());

    (*reply)["total"] = totalText;
    (*reply)["used"] = usedText;
    (*reply)["free"] = freeText;
    (*reply)["useper"] = usedShare;
    return true;
}

std::string CStorageMediaPlugin::sizeconver(unsigned long long size)
{
    float value = 0;
    const char* unit = "";
    if (size >= kGigabyte.size) {
        value = inUnit(size, kGigabyte);
        unit = kGigabyte.name;
        std::printf("usize:%llu, %0.2fGB\r\n", size, static_cast<double>(value));
    } else if (size >= kMegabyte.size) {
        value = inUnit(size, kMegabyte);
        unit = kMegabyte.name;
        std::printf("%0.2fMB\r\n", static_cast<double>(value));
    } else if (size >= kKilobyte.size) {
        value = inUnit(size, kKilobyte);
        unit = kKilobyte.name;
        std::printf("%0.2fKB\r\n", static_cast<double>(value));
    } else {
        LOG_WAR("Cap too small!!!%llu", size);
    }
    char text[10] = {};
    std::snprintf(text, sizeof text, "%0.2f", static_cast<double>(value));
    return std::string(text) + unit;
}

} // namespace tvfirmware
