// The wind graph's work on a full history (1001 observations): the model the window paints from,
// made on every track record while the graph is open, and the sine fit over the whole history.

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>

#include "base/date_time.h"
#include "wind/wind_data.h"
#include "wind/wind_fit.h"
#include "wind/wind_graph.h"

namespace wakeline {
namespace {

// One observation every 30 s (8 h 20 min): a 7-minute shift of 12 degrees around north, with a
// deterministic ripple on top, and a breeze building from 10 to 16 kt.
WindData FullHistory() {
    WindData history;
    const DateTime start = DateTimeFromFields({2026, 11, 15, 6, 0, 0});
    for (int i = 0; i < kWindCapacity; ++i) {
        const double minutes = i * 0.5;
        double direction =
            12.0 * std::sin(2.0 * std::numbers::pi * minutes / 7.0) + 3.0 * std::sin(i * 1.7);
        if (direction < 0) {
            direction += 360.0;
        }
        AddWindObservation(history, static_cast<float>(10.0 + 6.0 * i / kWindCapacity),
                           static_cast<float>(direction), start + minutes / 1440.0, 1);
    }
    return history;
}

void BM_MakeWindGraphFullHistory(benchmark::State& state) {
    const WindData history = FullHistory();
    for (auto _ : state) {
        benchmark::DoNotOptimize(MakeWindGraph(history, history.Obs[0].Time));
    }
}
BENCHMARK(BM_MakeWindGraphFullHistory)->Unit(benchmark::kMicrosecond);

void BM_FitWindOscillationFullHistory(benchmark::State& state) {
    const WindData history = FullHistory();
    for (auto _ : state) {
        benchmark::DoNotOptimize(FitWindOscillation(history, history.Obs[0].Time));
    }
}
BENCHMARK(BM_FitWindOscillationFullHistory)->Unit(benchmark::kMicrosecond);

// The window's default view: the last hour only.
void BM_FitWindOscillationLastHour(benchmark::State& state) {
    const WindData history = FullHistory();
    const DateTime start = DefaultGraphStart(history);
    for (auto _ : state) {
        benchmark::DoNotOptimize(FitWindOscillation(history, start));
    }
}
BENCHMARK(BM_FitWindOscillationLastHour)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace wakeline
