#include <benchmark/benchmark.h>

#include <cstdio>

// Results go to the file that --benchmark_out names: standard output is the plugin's, and is thrown away.
int main(int argc, char** argv)
{
    if (std::freopen("/dev/null", "w", stdout) == nullptr) {
        return 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
