#pragma once
// The battery of this computer for the battery monitor: UPower when it knows a battery, else
// the kernel's power_supply directory, else unknown. The main timer asks ten times a second;
// a battery changes far slower, so a reading is kept for a few seconds rather than waking
// the power service and the disk on every tick.

#include <chrono>
#include <optional>
#include <string>

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

  private:
    static constexpr std::chrono::seconds kKeepReading{5};

    UPowerBattery upower_;
    SysfsBattery sysfs_;
    bool askUPower_ = true;
    std::optional<BatteryStatus> last_;
    std::chrono::steady_clock::time_point lastRead_;
};

}  // namespace wakeline
