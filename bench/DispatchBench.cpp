#include "bench/BenchPlatform.h"

#include "plugin/CommandHash.h"
#include "plugin/StorageMediaPlugin.h"
#include "storage/CStorageMediaPlugin.h"

#include <benchmark/benchmark.h>

#include <map>

namespace {

using tvfirmware::CStorageMediaPlugin;

// The cheapest command: it looks at its request's pointer and acknowledges.
constexpr char kCommand[] = "storagemedia.folder.appendplaylistandplay";

Json::Value cheapestRequest()
{
    Json::Value request;
    request["CmdHash"] = tvfirmware::commandHash(kCommand);
    return request;
}

void dispatchPlugin(benchmark::State& state)
{
    const LoadedPlugin plugin;
    Json::Value request = cheapestRequest();
    Json::Value reply;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Plugin_Execute(kCommand, &request, &reply));
    }
}

void dispatchFloor(benchmark::State& state)
{
    const LoadedPlugin plugin;
    using Handler = bool (CStorageMediaPlugin::*)(Json::Value*, Json::Value*);
    std::map<unsigned int, Handler> handlers;
    for (unsigned int i = 0; i < 46; ++i) { // as many as there are commands
        handlers[i * 93000000U] = &CStorageMediaPlugin::folderAppendPlayListAndPlay;
    }
    handlers[tvfirmware::commandHash(kCommand)] = &CStorageMediaPlugin::folderAppendPlayListAndPlay;
    Json::Value request = cheapestRequest();
    Json::Value reply;
    for (auto _ : state) {
        const auto found = handlers.find(request["CmdHash"].asUInt());
        benchmark::DoNotOptimize((CStorageMediaPlugin::m_pThisControl->*found->second)(&request, &reply));
    }
}

BENCHMARK(dispatchPlugin)->Name("dispatch/plugin");
BENCHMARK(dispatchFloor)->Name("dispatch/floor");

} // namespace
