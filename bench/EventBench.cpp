#include "bench/BenchPlatform.h"
#include "bench/HandBuilt.h"

#include "platform/SocMwEvents.h"
#include "storage/CStorageMediaPlugin.h"

#include <benchmark/benchmark.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

void completionPlugin(benchmark::State& state)
{
    const LoadedPlugin plugin;
    std::vector<FolderFileInfo_s> files = folderOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        CStorageMediaPlugin::onRecvEvent(SOCMW_MM_EVENT_FB_CHANGE_DIR_COMPLETED, &files);
    }
}

void completionFloor(benchmark::State& state)
{
    const std::vector<FolderFileInfo_s> files = folderOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        Json::Value body = handBuiltCompletion(files);
        discard("c", "storagemedia.folder.chgdir.complete", body);
    }
}

BENCHMARK(completionPlugin)->Name("directory completion/plugin")->Arg(10)->Arg(1000)->Arg(100000)->Arg(1000000);
BENCHMARK(completionFloor)->Name("directory completion/floor")->Arg(10)->Arg(1000)->Arg(100000)->Arg(1000000);

void thumbnailPlugin(benchmark::State& state)
{
    const LoadedPlugin plugin;
    Json::Value request;
    request["channelId"] = "client-1";
    request["reqId"] = "request-1";
    request["type"] = 3;
    CStorageMediaPlugin::m_pThisControl->startThumbnail(&request, nullptr);
    thumbnail_ready_s thumbnail = {3, 1, "/media/stick/IMG_0001.jpg", "/mtd_rwarea/apdat/Thumbnaildata/Mass/3.jpg"};
    for (auto _ : state) {
        CStorageMediaPlugin::onRecvEvent(SOCMW_MM_EVENT_THUMBNAIL_DATA_READY, &thumbnail);
    }
}

void thumbnailFloor(benchmark::State& state)
{
    const std::string event = "startThumbnail";
    const std::string reqId = "request-1";
    const thumbnail_ready_s thumbnail = {3, 1, "/media/stick/IMG_0001.jpg", "/mtd_rwarea/apdat/Thumbnaildata/Mass/3.jpg"};
    for (auto _ : state) {
        Json::Value body;
        body["path"] = thumbnail.path;
        body["filepath"] = thumbnail.filepath;
        body["index"] = thumbnail.index;
        body["reqId"] = reqId;
        discard("client-1", (event + ".fragment").c_str(), body);
    }
}

BENCHMARK(thumbnailPlugin)->Name("thumbnail event/plugin");
BENCHMARK(thumbnailFloor)->Name("thumbnail event/floor");

void progressPlugin(benchmark::State& state)
{
    const LoadedPlugin plugin;
    std::uint32_t time = 61;
    for (auto _ : state) {
        CStorageMediaPlugin::onRecvEvent(SOCMW_MM_EVENT_PLAYING_CUT_TIME, &time);
    }
}

void progressFloor(benchmark::State& state)
{
    std::uint32_t time = 61;
    for (auto _ : state) {
        benchmark::DoNotOptimize(time);
        Json::Value body;
        body["time"] = time;
        discard("storagemedia", "storagemedia.media.process", body);
    }
}

BENCHMARK(progressPlugin)->Name("progress event/plugin");
BENCHMARK(progressFloor)->Name("progress event/floor");

} // namespace
