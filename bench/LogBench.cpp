#include "bench/BenchPlatform.h"

#include "storage/Log.h"

#include <benchmark/benchmark.h>

#include <ctime>

namespace {

void suppressedPlugin(benchmark::State& state)
{
    benchPlatform().logLevel = 4;
    int number = 7;
    for (auto _ : state) {
        benchmark::DoNotOptimize(number);
        LOG_DBG("file type:%d", number);
    }
}

void suppressedFloor(benchmark::State& state)
{
    benchPlatform().logLevel = 4;
    for (auto _ : state) {
        bool printed = SocMwLogLevelGet() < 1;
        benchmark::DoNotOptimize(printed);
    }
}

void printedPlugin(benchmark::State& state)
{
    benchPlatform().logLevel = 0;
    const char* path = "/media/stick/Holiday films/IMG_0001.jpg";
    for (auto _ : state) {
        LOG_DBG("Path:%s", path);
    }
    benchPlatform().logLevel = 4;
}

void printedFloor(benchmark::State& state)
{
    const char* path = "/media/stick/Holiday films/IMG_0001.jpg";
    for (auto _ : state) {
        const std::time_t now = std::time(nullptr);
        char time[26] = {};
        ctime_r(&now, time);
        time[24] = '\0';
        std::fprintf(stdout, "[%s][%s][%s][%s-%d]Path:%s\r\n", time, "DAEMON-STORAGEMEDIAMGR", "DBG", __func__, __LINE__,
                     path);
    }
}

BENCHMARK(suppressedPlugin)->Name("suppressed log line/plugin");
BENCHMARK(suppressedFloor)->Name("suppressed log line/floor");
BENCHMARK(printedPlugin)->Name("printed log line/plugin");
BENCHMARK(printedFloor)->Name("printed log line/floor");

} // namespace
