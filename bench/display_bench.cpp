// Cost per call of the number formatter and the navigation arithmetic, which run for every
// field of every data line (up to ten lines a second) and for every track record.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "base/number_format.h"
#include "base/text_number.h"
#include "display/navigation.h"

namespace {

void BM_FormatToWidth(benchmark::State& state, float value, const char* mask, int width) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            wakeline::FormatToWidth(value, mask, static_cast<std::int16_t>(width)));
    }
}
BENCHMARK_CAPTURE(BM_FormatToWidth, speed_pad, 7.26f, "0.0", 4);
BENCHMARK_CAPTURE(BM_FormatToWidth, whole_degrees, 273.4f, "0", 4);
BENCHMARK_CAPTURE(BM_FormatToWidth, minutes, 51.408f, "00.000", 0);
BENCHMARK_CAPTURE(BM_FormatToWidth, cut_keeps, 123.46f, "0.0", 4);
BENCHMARK_CAPTURE(BM_FormatToWidth, cut_reformat, 12345.6f, "0.0", 4);
BENCHMARK_CAPTURE(BM_FormatToWidth, cut_negative, -3.75f, "0.0", 3);
BENCHMARK_CAPTURE(BM_FormatToWidth, huge, 1e20f, "0.0", 4);

void BM_FormatAngle(benchmark::State& state, const char* text, int fold, const char* side,
                    int decimals) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(wakeline::FormatAngle(text, static_cast<std::int16_t>(fold), side,
                                                       static_cast<std::int16_t>(decimals)));
    }
}
BENCHMARK_CAPTURE(BM_FormatAngle, course, "4.7717", 0, "", 0);
BENCHMARK_CAPTURE(BM_FormatAngle, wind_angle_folded, "5.2360", 180, "", 0);
BENCHMARK_CAPTURE(BM_FormatAngle, variation_side, "-0.0349", 180, "EW", 2);
BENCHMARK_CAPTURE(BM_FormatAngle, not_numeric, "1,5", 0, "", 0);

void BM_GrCDXY(benchmark::State& state) {
    std::int32_t lat = 3150000;  // 52.5 degrees north
    for (auto _ : state) {
        benchmark::DoNotOptimize(wakeline::GrCDXY(-255000, lat, -254100, lat + 400));
        benchmark::ClobberMemory();
        lat ^= 1;  // keeps the compiler from hoisting the call out of the loop
    }
}
BENCHMARK(BM_GrCDXY);

void BM_DDtoDM(benchmark::State& state, const char* text, const char* kind) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(wakeline::DDtoDM(text, kind));
    }
}
BENCHMARK_CAPTURE(BM_DDtoDM, latitude, "52.512345", "lat");
BENCHMARK_CAPTURE(BM_DDtoDM, longitude, "-4.250000", "lon");

void BM_LeadingNumber(benchmark::State& state, const char* text) {
    const std::string line = text;
    for (auto _ : state) {
        benchmark::DoNotOptimize(wakeline::LeadingNumber(line));
    }
}
BENCHMARK_CAPTURE(BM_LeadingNumber, radians, "4.771700");
BENCHMARK_CAPTURE(BM_LeadingNumber, empty, "");

}  // namespace
