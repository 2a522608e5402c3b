// One data line through the live display's computation, as the link delivers several a second
// for the whole of a voyage.

#include <benchmark/benchmark.h>

#include <string>

#include "display/display_computation.h"
#include "livedata/field_table.h"

namespace {

const std::string kLine =
    "51.95,-4.25,6.25,1.5708,1.5010,-0.0349,12.4,-0.7854,-0.5236,4.0143,6.1,8.2,4.55,1.4835,"
    "6.05,51 57.500 N,004 10.250 W,0.5236,0.12R,0.2618,3.45,5.8,FALMOUTH\r\n";

class FixedPerformance : public wakeline::PerformanceLookup {
  public:
    bool PolarTablesOn() const override { return true; }
    bool HasCurrentTable() const override { return true; }
    float DampingFactor() const override { return 0.3f; }
    std::optional<float> AngleCorrection(float, float) const override { return 2.0f; }
    std::optional<float> SpeedCorrection(float, float) const override { return 0.4f; }
    std::optional<float> TargetSpeed(float, float) const override { return 6.7f; }
};

void BM_TraceDisplayLine(benchmark::State& state) {
    wakeline::FieldTable table;
    wakeline::InitFieldTable(table);
    wakeline::DisplayComputation display(table);
    FixedPerformance performance;
    if (state.range(0) != 0) {
        display.SetPerformance(&performance);
    }
    for (auto _ : state) {
        auto outcome = display.TraceDisplayLine(kLine);
        benchmark::DoNotOptimize(outcome);
    }
}
BENCHMARK(BM_TraceDisplayLine)->Arg(0)->Arg(1)->ArgName("polar");

}  // namespace
