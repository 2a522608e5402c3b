#pragma once
// The battery of this computer for the battery monitor: UPower when it knows a battery, else
// the kernel's power_supply directory, else unknown. The main timer asks ten times a second;
// a battery changes far slower, so a reading is kept for a few seconds rather than waking
// the power service and the disk on every tick.

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "power/battery_status.h"
#include "power/platform/sysfs_battery.h"
#include "power/platform/upower_battery.h"

namespace wakeline {

class SystemBattery : public BatterySource {
  public:
    // With `root`, only that power_supply directory is read and UPower is not asked.
    explicit SystemBattery(const std::optional<std::string>& root = std::nullopt)
        : sysfs_(root.value_or(SysfsBattery::kKernelRoot)), askUPower_(!root) {}

    BatteryStatus Read() override;
    // Told why UPower gave no battery, once per change of the reason, so that a run's log
    // says why the battery came from the kernel's directory or is unknown.
    void SetFailureReport(std::function<void(const Status&)> report) {
        report_ = std::move(report);
    }

  private:
    static constexpr std::chrono::seconds kKeepReading{5};

    UPowerBattery upower_;
    SysfsBattery sysfs_;
    bool askUPower_ = true;
    std::optional<BatteryStatus> last_;
    std::function<void(const Status&)> report_;
    std::string reported_;  // the last failure told
    std::chrono::steady_clock::time_point lastRead_;
};

}  // namespace wakeline
