// How fast the link cuts its byte stream into lines: a chart plotter sends a data line a
// second, but a replay or a misbehaving server may send megabytes, and every byte passes here
// on the one thread that also draws the window.
#include <benchmark/benchmark.h>

#include <string>

#include "base/line_reader.h"

namespace {

// 1 MiB of data lines, or of one line without an end, fed in 64 KiB chunks as a socket read
// would deliver them.
void Split(benchmark::State& state, bool endless) {
    std::string stream;
    const std::string line =
        "5230.1234,N,00412.5678,E,6.2,184.0,12.5,0.785,7.3,A,WP1,2.1,3.4,0.2,1.1,,,,,,,,\r\n";
    while (stream.size() < 1024 * 1024) {
        stream += endless ? std::string(line.size(), 'x') : line;
    }
    for (auto _ : state) {
        wakeline::LineReader splitter(wakeline::LineEnds::LfOptionalCr);
        std::size_t lines = 0;
        for (std::size_t at = 0; at < stream.size(); at += 64 * 1024) {
            lines += splitter.Feed(std::string_view(stream).substr(at, 64 * 1024)).size();
        }
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(std::int64_t(state.iterations()) * std::int64_t(stream.size()));
}

void BM_SplitDataLines(benchmark::State& state) {
    Split(state, false);
}
void BM_SplitEndlessLine(benchmark::State& state) {
    Split(state, true);
}

BENCHMARK(BM_SplitDataLines);
BENCHMARK(BM_SplitEndlessLine);

}  // namespace
