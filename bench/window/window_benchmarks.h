#pragma once
// The window's cost benchmarks, registered by wakeline_window_bench's main() once the boat
// they sail and the application exist.

namespace wakeline::bench {

class BenchBoat;

// CPU time of `wakeline` with its window fed one data line a second, against an empty window.
void RegisterWindowCpuBenchmark(const BenchBoat& boat);
// Time from a data line's arrival on the link to the repaint of the value it changed.
void RegisterRepaintLatencyBenchmark(const BenchBoat& boat);
// Painting the wind graph of a full history with its fitted sine.
void RegisterWindGraphPaintBenchmark();

}  // namespace wakeline::bench
