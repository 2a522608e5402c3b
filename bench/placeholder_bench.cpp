#include <benchmark/benchmark.h>
#include "display/number_format.h"
static void BM_FormatToWidth(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(wakeline::FormatToWidth(7.26f, "0.0", 4));
}
BENCHMARK(BM_FormatToWidth);
