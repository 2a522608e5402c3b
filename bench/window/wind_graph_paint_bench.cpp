// Painting the wind graph of a full history (1001 observations, the most it holds): the work an
// open graph does after every track record, and on every pointer move that changes the read-out.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <cmath>

#include "wind/window/wind_graph_window.h"
#include "window_benchmarks.h"

namespace wakeline::bench {
namespace {

WindData FullHistory() {
    WindData history;
    const DateTime start = DateTimeFromFields({2026, 6, 1, 12, 0, 0});
    for (int i = 0; i < kWindCapacity; ++i) {
        const double minutes = i * 10 / 60.0;
        AddWindObservation(history, static_cast<float>(14 + 2 * std::sin(minutes / 4)),
                           static_cast<float>(240 + 12 * std::sin(2 * M_PI * minutes / 8)),
                           start + i * 10.0 / 86400.0, 1);
    }
    return history;
}

void PaintFullHistory(benchmark::State& state) {
    const WindData history = FullHistory();
    WindGraphSettings settings;
    settings.overlayShown = true;
    WindGraphWindow graph(history, settings);
    graph.resize(760, 480);
    graph.SetStart(history.Obs[0].Time);
    graph.Fit();
    WindGraphCanvas* canvas = graph.Canvas();
    QImage image(canvas->size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        canvas->render(&image);
        benchmark::DoNotOptimize(image.bits());
    }
}

}  // namespace

void RegisterWindGraphPaintBenchmark() {
    benchmark::RegisterBenchmark("BM_WindGraphPaintFullHistory", PaintFullHistory)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace wakeline::bench
