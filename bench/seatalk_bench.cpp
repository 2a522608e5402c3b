// How many bytes per second the SeaTalk input handles, against the bus's own rate (4800 baud
// carries at most 480 bytes a second; "xBus" is how many buses one core could serve):
// parity-mark decoding, framing and datagram decoding, and a data line composed for every
// completed event, as in the navigation centre.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "seatalk/parmrk_decoder.h"
#include "seatalk/seatalk_frame.h"
#include "seatalk/seatalk_input.h"

namespace wakeline {
namespace {

constexpr double kBusBytesPerSecond = 480;

// A passage's worth of datagrams as the port delivers them (command bytes marked FF 00),
// the mix an instrument bus carries: wind, speed, depth, position, course, time.
std::vector<std::uint8_t> Stream(std::size_t copies) {
    const std::vector<std::uint8_t> round = {
        0xFF, 0x00, 0x10, 0x01, 0x00, 0x5A,                          // AWA
        0xFF, 0x00, 0x11, 0x01, 0x05, 0x00,                          // AWS
        0xFF, 0x00, 0x20, 0x01, 0x3C, 0x00,                          // STW
        0xFF, 0x00, 0x00, 0x02, 0x00, 0xFF, 0xFF, 0x00,              // depth, with a doubled FF
        0xFF, 0x00, 0x52, 0x01, 0x3C, 0x00,                          // SOG
        0xFF, 0x00, 0x53, 0x40, 0x0B,                                // COG
        0xFF, 0x00, 0x84, 0x90, 0x05,                                // heading
        0xFF, 0x00, 0x58, 0x25, 0x34, 0x75, 0x30, 0x04, 0x3A, 0x98,  // position
        0xFF, 0x00, 0x54, 0x81, 0x79, 0x0E,                          // time
        0xFF, 0x00, 0x56, 0x31, 0x0F, 0x18,                          // date
    };
    std::vector<std::uint8_t> stream;
    for (std::size_t i = 0; i < copies; ++i) {
        stream.insert(stream.end(), round.begin(), round.end());
    }
    return stream;
}

void Report(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
    state.counters["xBus"] = benchmark::Counter(static_cast<double>(bytes) / kBusBytesPerSecond,
                                                benchmark::Counter::kIsIterationInvariantRate);
}

// The whole road, in reads of the given size.
void BM_SeaTalkInput(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = Stream(100);
    const auto readSize = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        SeaTalkInput input(kSeaTalkModeSC);
        std::size_t lines = 0;
        for (std::size_t at = 0; at < stream.size(); at += readSize) {
            const std::size_t n = std::min(readSize, stream.size() - at);
            lines += input.Feed({stream.data() + at, n}, 45366.5).size();
        }
        benchmark::DoNotOptimize(lines);
    }
    Report(state, stream.size());
}
BENCHMARK(BM_SeaTalkInput)->Arg(1)->Arg(8)->Arg(64)->Arg(4096);

// Decoding and framing alone, without composing lines.
void BM_SeaTalkFraming(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = Stream(100);
    for (auto _ : state) {
        SeaTalkValues values;
        SeaTalkReceiver receiver(kSeaTalkModeSC, values);
        ParmrkDecoder decoder;
        std::size_t reports = 0;
        for (const ReceivePiece& piece : decoder.Feed(stream)) {
            if (piece.parityError) {
                receiver.OnParityError();
            }
            reports += receiver.OnReceive(piece.bytes).report.size();
        }
        benchmark::DoNotOptimize(reports);
    }
    Report(state, stream.size());
}
BENCHMARK(BM_SeaTalkFraming);

}  // namespace
}  // namespace wakeline
