// The battery monitor's share of a main-timer tick, which comes ten times a second for days:
// the status text and alarm decisions, with the battery reading itself left out.

#include <benchmark/benchmark.h>

#include "power/power_monitor.h"

namespace {

class SteadyBattery : public wakeline::BatterySource {
  public:
    wakeline::BatteryStatus Read() override { return {64, wakeline::BatteryStatus::kChargingFlag}; }
};

class SilentAlarm : public wakeline::PowerAlarm {
  public:
    void ShowPowerAlarm(const wakeline::PowerState&, wakeline::DateTime) override {}
    std::int16_t CheckSoundLevels(bool, bool) override { return 0; }
};

void BM_PowerCheck(benchmark::State& state) {
    SteadyBattery battery;
    SilentAlarm alarm;
    wakeline::PowerMonitor monitor(battery, alarm);
    wakeline::DateTime now = 46348.5;
    for (auto _ : state) {
        now += 0.1 / 86400;
        monitor.PowerCheck(now, false);
        benchmark::DoNotOptimize(monitor.StatusText().data());
    }
}
BENCHMARK(BM_PowerCheck);

}  // namespace
