// The lookups the live display makes on every data line: the two wind corrections and the
// target speed, on a full table (11 wind speeds, 11 rows by 10 angle columns).

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

#include "performance/performance_tables.h"
#include "performance/table_defaults.h"
#include "performance/target_speed.h"
#include "performance/wind_correction.h"

namespace {

using namespace wakeline;

CorrectionTable FullCorrectionTable() {
    CorrectionTable c = DefaultCorrectionTable();
    c.SpeedCount = 11;
    for (int j = 1; j <= 11; ++j) {
        c.WindSpeed[j] = 3.0f * static_cast<float>(j);
        c.SpeedCorrectionKt[j] = 0.1f * static_cast<float>(j);
        c.SpeedCorrectionAngle[j] = 150.0f;
        for (int k = 1; k <= 3; ++k) {
            c.AngleCorrection[j][k] = static_cast<float>(k) - 0.2f * static_cast<float>(j);
        }
    }
    return c;
}

PolarTable FullPolarTable() {
    PolarTable t = EmptyPolarTable("Genoa", 11, 10);
    for (int c = 1; c <= 10; ++c) {
        t.ColumnAngle[c] = 35.0f + 15.0f * static_cast<float>(c);
    }
    for (int r = 1; r <= 11; ++r) {
        t.RowWindSpeed[r] = 2.0f * static_cast<float>(r) + 2.0f;
        t.RowTwaMin[r] = 46.0f - static_cast<float>(r);
        for (int c = 0; c <= 10; ++c) {
            t.Cell[r][c] = 3.0f + 0.3f * static_cast<float>(r) + 0.2f * static_cast<float>(c);
        }
    }
    return t;
}

// Points spread over the table: both sides, every region of the angle and speed axes.
std::vector<std::pair<float, float>> Points() {
    std::vector<std::pair<float, float>> points;
    for (int i = 0; i < 64; ++i) {
        const float angle = -175.0f + 5.5f * static_cast<float>(i);
        const float speed = 3.0f + 0.33f * static_cast<float>(i % 60);
        points.emplace_back(angle, speed);
    }
    return points;
}

void BM_DisplayLookups(benchmark::State& state) {
    const CorrectionTable correction = FullCorrectionTable();
    const PolarTable polar = FullPolarTable();
    const auto points = Points();
    std::size_t i = 0;
    for (auto _ : state) {
        const auto& [angle, speed] = points[i++ & 63];
        benchmark::DoNotOptimize(AngleCorrectionAt(angle, speed, correction));
        benchmark::DoNotOptimize(SpeedCorrectionAt(angle, speed, correction));
        benchmark::DoNotOptimize(TargetSpeedAt(angle, speed, polar));
    }
}
BENCHMARK(BM_DisplayLookups);

void BM_TargetSpeedAt(benchmark::State& state) {
    const PolarTable polar = FullPolarTable();
    const auto points = Points();
    std::size_t i = 0;
    for (auto _ : state) {
        const auto& [angle, speed] = points[i++ & 63];
        benchmark::DoNotOptimize(TargetSpeedAt(angle, speed, polar));
    }
}
BENCHMARK(BM_TargetSpeedAt);

}  // namespace
