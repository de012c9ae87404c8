#include "bench/BenchPlatform.h"
#include "bench/HandBuilt.h"

#include "storage/CStorageMediaPlugin.h"

#include <benchmark/benchmark.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

void pagePlugin(benchmark::State& state)
{
    const LoadedPlugin plugin;
    benchPlatform().files = folderOf(static_cast<std::size_t>(state.range(0)));
    Json::Value request;
    request["pageid"] = 0;
    request["type"] = 1;
    for (auto _ : state) {
        Json::Value reply;
        CStorageMediaPlugin::m_pThisControl->getOnePageFiles(&request, &reply);
        benchmark::DoNotOptimize(reply);
    }
}

void pageFloor(benchmark::State& state)
{
    benchPlatform().files = folderOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const std::vector<FolderFileInfo_s> files = benchPlatform().files; // the browser fills the caller's list
        Json::Value list(Json::arrayValue);
        for (const FolderFileInfo_s& file : files) {
            list.append(handBuiltEntry(file));
        }
        Json::Value reply;
        reply["filecount"] = static_cast<Json::UInt>(files.size());
        reply["filelst"] = std::move(list);
        benchmark::DoNotOptimize(reply);
    }
}

BENCHMARK(pagePlugin)->Name("page/plugin")->Arg(9)->Arg(1000);
BENCHMARK(pageFloor)->Name("page/floor")->Arg(9)->Arg(1000);

void groupPlugin(benchmark::State& state)
{
    const LoadedPlugin plugin;
    benchPlatform().files = folderOf(static_cast<std::size_t>(state.range(0)));
    Json::Value request;
    request["keystr"] = "Jazz";
    request["number"] = 9;
    request["asc"] = 1;
    for (auto _ : state) {
        Json::Value reply;
        CStorageMediaPlugin::m_pThisControl->getGroupListInfo(&request, &reply);
        benchmark::DoNotOptimize(reply);
    }
}

void groupFloor(benchmark::State& state)
{
    benchPlatform().files = folderOf(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        const std::vector<FolderFileInfo_s> files = benchPlatform().files;
        Json::Value list(Json::arrayValue);
        for (const FolderFileInfo_s& file : files) {
            Json::Value entry(Json::objectValue);
            entry["path"] = file.path;
            entry["name"] = file.name;
            entry["ctime"] = file.ctime;
            entry["size"] = static_cast<Json::UInt64>(file.size);
            list.append(std::move(entry));
        }
        Json::Value reply;
        reply["filenum"] = static_cast<Json::UInt>(files.size());
        reply["filelst"] = std::move(list);
        benchmark::DoNotOptimize(reply);
    }
}

BENCHMARK(groupPlugin)->Name("group list/plugin")->Arg(100);
BENCHMARK(groupFloor)->Name("group list/floor")->Arg(100);

} // namespace
