// wakeline_window_bench: what the navigation centre's window costs, in CPU time at sea and in
// the time from a data line to its repaint. It needs a display (scripts/bench-window.sh runs it
// under Xvfb; without one, Qt's offscreen platform stands in) and a minute or more, so it is a
// program of its own rather than part of wakeline_bench.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdlib>

#include "bench_boat.h"
#include "shell/platform/run_platform.h"
#include "window_benchmarks.h"

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    const wakeline::bench::BenchBoat boat;
    if (!boat.HasLines()) {
        return 1;
    }
    // The runs here and the programs started keep their settings, logs and state in the boat,
    // away from the user's own; set before any thread exists.
    ::setenv("XDG_CONFIG_HOME", boat.ConfigDir().c_str(), 1);
    ::setenv("XDG_STATE_HOME", boat.StateDir().c_str(), 1);
    if (!wakeline::HasDisplay()) {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    QApplication app(argc, argv);
    wakeline::bench::RegisterWindowCpuBenchmark(boat);
    wakeline::bench::RegisterRepaintLatencyBenchmark(boat);
    wakeline::bench::RegisterWindGraphPaintBenchmark();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
