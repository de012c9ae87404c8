#include "plugin/StorageMediaPlugin.h"

#include <benchmark/benchmark.h>

namespace {

void loadAndUnload(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(Plugin_Load());
        Plugin_Unload();
    }
}

BENCHMARK(loadAndUnload)->Name("load and unload/plugin");

} // namespace
