#include "bench/BenchPlatform.h"
#include "bench/HandBuilt.h"

#include "platform/SocMwEvents.h"
#include "storage/CStorageMediaPlugin.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include <malloc.h>

// The heap at its peak while a directory completion is built and published, against what the body itself holds. The C
// library's allocator is counted from in front of it.

namespace {

std::size_t inUse = 0;
std::size_t peak = 0;

void* counted(void* block)
{
    inUse += malloc_usable_size(block);
    peak = std::max(peak, inUse);
    return block;
}

std::size_t bodySize = 0;

void measureBody(const char* /*source*/, const char* /*name*/, Json::Value& body)
{
    const std::size_t before = inUse;
    body = Json::Value();
    bodySize = before - inUse;
}

} // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void __libc_free(void* block);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);

void* malloc(std::size_t size)
{
    return counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size)
{
    return counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size)
{
    inUse -= malloc_usable_size(block);
    return counted(__libc_realloc(block, size));
}

void free(void* block)
{
    inUse -= malloc_usable_size(block);
    __libc_free(block);
}

} // extern "C"

int main()
{
    const LoadedPlugin plugin;
    tvfirmware::CStorageMediaPlugin::m_pThisControl->setCallback(measureBody);
    std::printf("[\n");
    for (const std::size_t count : {10U, 1000U, 100000U, 1000000U}) {
        std::vector<FolderFileInfo_s> files = folderOf(count);
        const std::size_t before = inUse;
        peak = inUse;
        tvfirmware::CStorageMediaPlugin::onRecvEvent(SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED, &files);
        std::printf("  {\"entries\": %zu, \"peak\": %zu, \"body\": %zu}%s\n", count, peak - before, bodySize,
                    count < 1000000U ? "," : "");
    }
    std::printf("]\n");
}
