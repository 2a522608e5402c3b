#pragma once
// The battery as the desktop's power service UPower sees it over the system D-Bus: its
// display device, which already combines all of the computer's batteries.

#include <optional>

#include "power/battery_status.h"

namespace wakeline {

class UPowerBattery : public BatterySource {
  public:
    // Nothing when there is no system bus, UPower does not answer in time, or it knows no
    // battery.
    std::optional<BatteryStatus> TryRead();
    BatteryStatus Read() override { return TryRead().value_or(BatteryStatus{}); }
};

}  // namespace wakeline
