#pragma once
// The battery as the kernel shows it under /sys/class/power_supply: each supply of type
// "Battery" that powers the computer (not a mouse's or a headset's) gives its capacity and
// status. Works without any service running, so it is the fallback when UPower is absent.

#include <string>
#include <utility>

#include "power/battery_status.h"

namespace wakeline {

class SysfsBattery : public BatterySource {
  public:
    // `root` is the power_supply directory; tests point it at a directory of the same layout.
    static constexpr const char* kKernelRoot = "/sys/class/power_supply";

    explicit SysfsBattery(std::string root = kKernelRoot) : root_(std::move(root)) {}

    // The mean capacity of the computer's batteries, charging when any of them charges;
    // unknown (255) when there is none, or none gives a capacity.
    BatteryStatus Read() override;

  private:
    std::string root_;
};

}  // namespace wakeline
